#!/usr/bin/python3
"""Makes the DXF fixtures of the drawing readers' tests with ezdxf, an independent DXF writer.

Run from anywhere: /usr/bin/python3 tests/data/readers/make_fixtures.py. The files it writes are committed
beside it:
  K01/K01_secondary.dwg  a secondary drawing (DXF R2010 under a .dwg name, as projects hold them) with a
                         BOM table: label-anchored rows, a type-anchored row, a broken back link, a cell of
                         one blank, formatted MText
  title_blocks.dxf       R2004 (non-ASCII text as \\U+ escapes): a wiring title block that is passed over,
                         then a layout title block whose name is MText
  primary_diagram.dxf    R2018: head texts, circuits with prefixes, two references of one circuit, an
                         unnumbered block with a path, a BOM record on a reference, a marker in a definition,
                         nested symbols, and a secondary drawing that moved (found again as K01/...)
"""
import os

import ezdxf

HERE = os.path.dirname(os.path.abspath(__file__))


def appid(doc, name):
    if name not in doc.appids:
        doc.appids.new(name)
    return name


def set_value(doc, entity, app, *values):
    entity.set_xdata(appid(doc, app), [(1000, v) for v in values])


def set_link(doc, entity, app, handle):
    entity.set_xdata(appid(doc, app), [(1005, handle)])


def link(doc, source, forward, target, back):
    set_link(doc, source, forward, target.dxf.handle)
    set_link(doc, target, back, source.dxf.handle)


def add_xrecord(entity, name, strings):
    xdict = entity.get_extension_dict() if entity.has_extension_dict else entity.new_extension_dict()
    xdict.add_xrecord(name).reset([(1, s) for s in strings])


def add_title_block(doc, msp, number, name, origin, name_as_mtext=False):
    if "TITLE_A3" not in doc.blocks:
        doc.blocks.new("TITLE_A3").add_lwpolyline([(0, 0), (180, 0), (180, 30), (0, 30)], close=True)
    title = msp.add_blockref("TITLE_A3", origin)
    for app in ("HORSIZE_OF_DRAWING", "VERSIZE_OF_DRAWING", "HORNUM_OF_TABLE", "VERNUM_OF_TABLE", "X1"):
        set_value(doc, title, app, "1")
    add_xrecord(title, "CORVANE_TITLE",
                ["$BEGINETITLE", "A3", "图 号|10|25|60|5|0|0|", "图纸名称|70|25|170|5|0|0|", "$ENDTITLE"])
    msp.add_text(number, dxfattribs={"height": 3.5}).set_placement((origin[0] + 20, origin[1] + 12))
    if name_as_mtext:
        msp.add_mtext(name, dxfattribs={"insert": (origin[0] + 90, origin[1] + 12), "char_height": 3.5})
    else:
        msp.add_text(name, dxfattribs={"height": 3.5}).set_placement((origin[0] + 90, origin[1] + 12))
    return title


def secondary_drawing(path):
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    rows = [
        # label, type, code, price, name, count, note
        ("{\\H2.5;1QF}", "DZ47-60\\P/2P", "ZK-0601", "12.5", "{\\fSimSun|b0;微型断路器}", "2", " "),
        ("1KA", "JL-8GA", "", "", "电流继电器", "3", "过流"),
    ]
    y = 100
    for label, model, code, price, name, count, note in rows:
        cells = {}
        for column, (key, text) in enumerate((("LABEL", label), ("NO", "1"), ("TYPE", model), ("NAME", name),
                                              ("COUNT", count), ("NOTE", note))):
            cells[key] = msp.add_mtext(text, dxfattribs={"insert": (20 * column, y), "char_height": 2.5})
        y -= 8
        anchor = cells["LABEL"]
        set_value(doc, anchor, "QXBOM_LABEL", "")
        for key in ("NO", "TYPE", "NAME", "COUNT", "NOTE"):
            link(doc, anchor, f"QXBOM_LABEL_{key}HANDLE", cells[key], f"QXBOM_{key}_LABELHANDLE")
        if code:
            set_value(doc, cells["TYPE"], "QXBOM_CODE", code)
        if price:
            set_value(doc, cells["TYPE"], "QXBOM_PRICE", price)
    # The second row's name cell lost its back link: its name reads empty.
    doc.entitydb[cells["NAME"].dxf.handle].discard_xdata("QXBOM_NAME_LABELHANDLE")

    # A row anchored on its type cell, whose own text is kept as stored.
    type_cell = msp.add_mtext("{\\fArial;NSX100F}", dxfattribs={"insert": (40, 60), "char_height": 2.5})
    name_cell = msp.add_mtext("塑壳断路器", dxfattribs={"insert": (60, 60), "char_height": 2.5})
    count_cell = msp.add_mtext("1", dxfattribs={"insert": (80, 60), "char_height": 2.5})
    set_value(doc, type_cell, "QXBOM_TYPE", "")
    set_value(doc, type_cell, "QXBOM_CODE", "SK-100")
    link(doc, type_cell, "QXBOM_TYPE_NAMEHANDLE", name_cell, "QXBOM_NAME_TYPEHANDLE")
    link(doc, type_cell, "QXBOM_TYPE_COUNTHANDLE", count_cell, "QXBOM_COUNT_TYPEHANDLE")
    # A link into nothing.
    set_link(doc, type_cell, "QXBOM_TYPE_NOTEHANDLE", "FFFFF")
    # Text without keys is no part of the table.
    msp.add_mtext("说明", dxfattribs={"insert": (0, 0)})
    doc.saveas(path, encoding="utf-8")


def title_drawing(path):
    doc = ezdxf.new("R2004")
    msp = doc.modelspace()
    add_title_block(doc, msp, "DZ-01", "端子接线图", origin=(0, 0))
    add_title_block(doc, msp, "BZ-02", "{\\fSimSun|b0;柜体布置图}", origin=(0, 100), name_as_mtext=True)
    doc.saveas(path)


def primary_drawing(path):
    doc = ezdxf.new("R2018")
    msp = doc.modelspace()
    symbol = doc.blocks.new("QF_SYMBOL")
    symbol.add_line((0, 0), (0, 10))
    symbol.add_arc((0, 5), 2, 90, 270)

    # A panel whose definition keeps the BOM in a marker.
    marked = doc.blocks.new("PANEL_MARKED")
    marked.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    marker = marked.add_lwpolyline([(-0.5, 0, 0, 0, 1.0), (0.5, 0, 0, 0, 1.0)], format="xyseb", close=True)
    add_xrecord(marker, "QX_CIRCUI1_BOMRECORD", ["型号", "JDZ10-10", "编码", "PT-3001", "名称", "电压互感器", "数量", "2"])
    # A panel whose definition holds first-class symbols only.
    nested = doc.blocks.new("PANEL_NESTED")
    nested.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    inner = nested.add_blockref("QF_SYMBOL", (20, 60))
    set_value(doc, inner, "QX_SYMB1_TYPE", "VS1-12")
    set_value(doc, inner, "QX_SYMB1_CODE", "DL-1000")
    set_value(doc, inner, "QX_SYMB1_NAME", "真空断路器")

    for label, value in (("一次额定电压", "10kV"), ("母线规格", "TMY 3x(80x8)"), ("二次额定电压", "DC220V")):
        text = msp.add_text(f"{label}: {value}", dxfattribs={"height": 3.5})
        text.set_placement((0, 200 - 6 * len(msp)))
        set_value(doc, text, "QX_SYS_HEAD_ITEMNAME", label)
    add_title_block(doc, msp, "HD-YC-01", "10kV一次接线图", origin=(0, -40))

    def circuit(block, number, x, use, rows=(), secondary=None, pairs=None, kind="KYN28A-12"):
        panel = msp.add_blockref(block, (x, 20))
        set_value(doc, panel, "QX_Circuit1_No", number)
        set_value(doc, panel, "QX_Circuit1_GroupCode", "＠G1")
        set_value(doc, panel, "QX_Circuit1_Use", f"＠{use}")
        set_value(doc, panel, "QX_Circuit1_Type", f"＠{kind}")
        set_value(doc, panel, "QX_Circuit1_Cir1Voltage", "＠10kV")
        note = f"『{secondary}』" if secondary else ""
        set_value(doc, panel, "QX_Circuit1_Cir2Voltage", f"＠DC220V{note}")
        set_value(doc, panel, "QX_Circuit1_MuXianType", "＠TMY")
        set_value(doc, panel, "QX_Circuit1_TankCirNo", f"＠{x}")
        if rows:
            set_value(doc, panel, "QX_CIRCUIT1_EXATTRIBUTE", *rows)
        if pairs is not None:
            add_xrecord(panel, "QX_CIRCUI1_BOMRECORD", pairs)
        return panel

    circuit("PANEL_NESTED", "K01", 0, "进线", rows=("＠柜排列|||1", "＠额定电流(A)|||1250A", "＠回路名称|||进线一"),
            secondary="D:\\旧工程\\站\\K01\\K01_secondary.dwg",
            pairs=["型号", "VS1-12/1250", "编码", "DL-1001", "名称", "真空断路器", "数量", "1", "单价", "8000",
                   "型号", "LZZBJ9-10", "编码", "CT-2001", "名称", "电流互感器", "数量", "3"])
    circuit("PANEL_NESTED", "1＠K02『馈线』", 60, "出线", rows=("＠车总装号|||C-02",))
    # The same circuit drawn a second time, its type in other case: one record with two handles.
    circuit("PANEL_NESTED", "1＠K02", 120, "出线", rows=("＠车总装号|||ignored",), kind="kyn28a-12")
    circuit("PANEL_MARKED", "K03", 180, "计量")
    # No number, but a path: a record of empty strings.
    loose = msp.add_blockref("PANEL_NESTED", (240, 20))
    set_value(doc, loose, "QX_Circuit1_Path", "D:\\x.dwg")
    doc.saveas(path)


def main():
    os.makedirs(os.path.join(HERE, "K01"), exist_ok=True)
    secondary_drawing(os.path.join(HERE, "K01", "K01_secondary.dwg"))
    title_drawing(os.path.join(HERE, "title_blocks.dxf"))
    primary_drawing(os.path.join(HERE, "primary_diagram.dxf"))


if __name__ == "__main__":
    main()
