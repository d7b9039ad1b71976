#!/usr/bin/python3
"""Writes the drawings of the readers' benchmark with ezdxf: a primary diagram of circuit blocks and a
secondary drawing with a large BOM table, as the application stores them.

Usage: make_reader_drawings.py FOLDER [CIRCUITS [ROWS]]   (5000 circuit blocks and 20000 table rows by default)

  FOLDER/primary.dwg    head texts, a title block, CIRCUITS block references: every fifth draws a circuit a
                        second time; each carries the nine attributes, three row texts, a BOM record of two
                        parts and a list of secondary drawings whose folder has moved (one piece is beside the
                        primary drawing, one is found below the folder, one is nowhere)
  FOLDER/secondary.dwg  a title block and ROWS label-anchored rows of six linked MText cells
  FOLDER/sub/K*/...     the drawings that the secondary lists find below the folder
"""
import os
import sys

import ezdxf


def appid(doc, name):
    if name not in doc.appids:
        doc.appids.new(name)
    return name


def set_value(doc, entity, app, *values):
    entity.set_xdata(appid(doc, app), [(1000, v) for v in values])


def add_xrecord(entity, name, strings):
    xdict = entity.get_extension_dict() if entity.has_extension_dict else entity.new_extension_dict()
    xdict.add_xrecord(name).reset([(1, s) for s in strings])


def add_title_block(doc, msp, number, name):
    doc.blocks.new("TITLE_A3").add_lwpolyline([(0, 0), (180, 0), (180, 30), (0, 30)], close=True)
    title = msp.add_blockref("TITLE_A3", (0, -40))
    for app in ("HORSIZE_OF_DRAWING", "VERSIZE_OF_DRAWING", "HORNUM_OF_TABLE", "VERNUM_OF_TABLE", "X1"):
        set_value(doc, title, app, "1")
    add_xrecord(title, "CORVANE_TITLE",
                ["$BEGINETITLE", "A3", "图 号|10|25|60|5|0|0|", "图纸名称|70|25|170|5|0|0|", "$ENDTITLE"])
    msp.add_text(number).set_placement((20, -28))
    msp.add_text(name).set_placement((90, -28))


def primary(path, circuits):
    doc = ezdxf.new("R2018")
    msp = doc.modelspace()
    panel = doc.blocks.new("PANEL")
    panel.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    for label, value in (("一次额定电压", "10kV"), ("母线规格", "TMY-3×(80×8)"), ("二次额定电压", "DC220V")):
        text = msp.add_text(f"{label}:{value}")
        set_value(doc, text, "QX_SYS_HEAD_ITEMNAME", label)
    add_title_block(doc, msp, "YC-01", "一次系统图")
    for i in range(circuits):
        number = i - 1 if i % 5 == 4 else i  # every fifth block draws the circuit before it again
        ref = msp.add_blockref("PANEL", (50 * i, 0))
        secondary = "|".join([f"D:\\old\\站\\secondary.dwg", f"D:\\old\\站\\K{number % 50:04d}\\K{number % 50:04d}.dwg",
                              f"D:\\old\\gone\\missing{number}.dwg"])
        set_value(doc, ref, "QX_Circuit1_No", f"{number % 7}＠K{number:05d}")
        set_value(doc, ref, "QX_Circuit1_GroupCode", "＠G1")
        set_value(doc, ref, "QX_Circuit1_Use", "＠出线")
        set_value(doc, ref, "QX_Circuit1_Type", "＠KYN28A-12")
        set_value(doc, ref, "QX_Circuit1_Cir1Voltage", "＠10kV")
        set_value(doc, ref, "QX_Circuit1_Cir2Voltage", f"＠DC220V『{secondary}』")
        set_value(doc, ref, "QX_Circuit1_MuXianType", "＠TMY")
        set_value(doc, ref, "QX_Circuit1_TankCirNo", f"＠{i}")
        set_value(doc, ref, "QX_CIRCUIT1_EXATTRIBUTE", f"＠柜排列|||{i}", "＠额定电流|||630A", f"＠回路名称|||出线{i}")
        add_xrecord(ref, "QX_CIRCUI1_BOMRECORD", ["型号", "VS1-12/630", "编码", "DL-1002", "名称", "真空断路器",
                                                  "数量", "1", "型号", "LZZBJ9-10", "编码", "CT-2001", "名称",
                                                  "电流互感器", "数量", "2"])
    doc.saveas(path)


def secondary(path, rows):
    doc = ezdxf.new("R2018")
    msp = doc.modelspace()
    add_title_block(doc, msp, "EC-01", "二次原理图")
    keys = ("NO", "TYPE", "NAME", "COUNT", "NOTE")
    for app in ["QXBOM_LABEL", "QXBOM_CODE", "QXBOM_PRICE"] + [f"QXBOM_LABEL_{k}HANDLE" for k in keys] + \
               [f"QXBOM_{k}_LABELHANDLE" for k in keys]:
        appid(doc, app)
    for r in range(rows):
        y = -8 * r
        label = msp.add_mtext(f"{{\\H2.5;{r}QF}}", dxfattribs={"insert": (0, y)})
        cells = [msp.add_mtext(text, dxfattribs={"insert": (20 * (c + 1), y)}) for c, text in
                 enumerate((str(r), "DZ47-60\\P/2P C6", "{\\fSimSun|b0;微型断路器}", "2", " "))]
        label.set_xdata("QXBOM_LABEL", [(1000, "")])
        for key, cell in zip(keys, cells):
            label.set_xdata(f"QXBOM_LABEL_{key}HANDLE", [(1005, cell.dxf.handle)])
            cell.set_xdata(f"QXBOM_{key}_LABELHANDLE", [(1005, label.dxf.handle)])
        cells[1].set_xdata("QXBOM_CODE", [(1000, f"ZK-{r:05d}")])
        cells[1].set_xdata("QXBOM_PRICE", [(1000, "12.5")])
    doc.saveas(path)


def main():
    if len(sys.argv) not in (2, 3, 4):
        sys.exit(__doc__)
    folder = sys.argv[1]
    circuits = int(sys.argv[2]) if len(sys.argv) > 2 else 5000
    rows = int(sys.argv[3]) if len(sys.argv) > 3 else 20000
    os.makedirs(folder, exist_ok=True)
    for k in range(50):
        sub = os.path.join(folder, "sub", f"K{k:04d}")
        os.makedirs(sub, exist_ok=True)
        open(os.path.join(sub, f"K{k:04d}.dwg"), "w").close()
    primary(os.path.join(folder, "primary.dwg"), circuits)
    secondary(os.path.join(folder, "secondary.dwg"), rows)


if __name__ == "__main__":
    main()
