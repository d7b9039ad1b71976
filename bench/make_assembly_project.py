#!/usr/bin/python3
"""Writes a project for the cabinet assembly benchmark with ezdxf: a primary diagram of 1000 circuits (100
cabinets of 10 drawers) whose secondary drawings are 200 drawings shared among them, and 100 device folders,
each with its .prj and a drawing of 10 labelled parts. SCALE multiplies every count.

Usage: /usr/bin/python3 bench/make_assembly_project.py OUTPUT_FOLDER [SCALE]
The project is OUTPUT_FOLDER/Project; pass that folder to the benchmark in $QX_BENCH_PROJECTS.
"""
import os
import sys

import ezdxf

DRAWERS = 10


def appid(doc, name):
    if name not in doc.appids:
        doc.appids.new(name)
    return name


def set_value(doc, entity, app, value):
    entity.set_xdata(appid(doc, app), [(1000, value)])


def add_xrecord(entity, name, strings):
    xdict = entity.get_extension_dict() if entity.has_extension_dict else entity.new_extension_dict()
    xdict.add_xrecord(name).reset([(1, s) for s in strings])


def write_prj(path, cabinet):
    lines = ["$BEGIN NOTE OF PRJ", "$BEGIN_ONE_NOTE", "柜编号", cabinet, "$END_ONE_NOTE", "$END NOTE OF PRJ",
             "$BEGIN CONTENT OF PRJ", "$END CONTENT OF PRJ", "$EOF"]
    with open(path, "wb") as f:
        f.write("\r\n".join(lines).encode("gb18030"))


def add_title(doc, msp, number, name):
    if "TITLE" not in doc.blocks:
        doc.blocks.new("TITLE").add_lwpolyline([(0, 0), (180, 0), (180, 30), (0, 30)], close=True)
    title = msp.add_blockref("TITLE", (0, -40))
    set_value(doc, title, "HORSIZE_OF_DRAWING", "420")
    add_xrecord(title, "CORVANE_TITLE", ["图号|10|25|60|5|0|0|", "图名|70|25|170|5|0|0|"])
    msp.add_text(number).set_placement((20, -28))
    msp.add_text(name).set_placement((90, -28))


def add_row(doc, msp, y, label, number, model, code, name, count, records=None):
    cells = {key: msp.add_mtext(text, dxfattribs={"insert": (20 * i, y)})
             for i, (key, text) in enumerate((("LABEL", label), ("NO", number), ("TYPE", model), ("NAME", name),
                                              ("COUNT", count)))}
    anchor = cells["LABEL"]
    anchor.set_xdata(appid(doc, "QXBOM_LABEL"), [(1000, label)])
    for key in ("NO", "TYPE", "NAME", "COUNT"):
        forward = "QXBOM_LABEL_NOHANDLE" if key == "NO" else f"QXBOM_LABEL_{key}HANDLE"
        anchor.set_xdata(appid(doc, forward), [(1005, cells[key].dxf.handle)])
        cells[key].set_xdata(appid(doc, f"QXBOM_{key}_LABELHANDLE"), [(1005, anchor.dxf.handle)])
    set_value(doc, cells["TYPE"], "QXBOM_CODE", code)
    for name_, lines in (records or {}).items():
        add_xrecord(anchor, name_, lines)


def primary(path, cabinets, secondaries):
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    doc.blocks.new("CIR").add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    for c in range(cabinets):
        for d in range(DRAWERS):
            index = c * DRAWERS + d
            ref = msp.add_blockref("CIR", (50 * d, 150 * c))
            set_value(doc, ref, "QX_Circuit1_No", f"{d + 1}＠K{c + 1:03d}")
            set_value(doc, ref, "QX_Circuit1_Use", "＠出线")
            set_value(doc, ref, "QX_Circuit1_Type", "＠KYN28")
            set_value(doc, ref, "QX_Circuit1_Cir2Voltage", f"＠DC220V『D:\\old\\S{index % secondaries:04d}.dwg』")
            add_xrecord(ref, "QX_CIRCUI1_BOMRECORD", [
                "型号", "VS1-12", "编码", "DL-1", "名称", "断路器", "数量", "1",
                "型号", "LZZBJ9", "编码", "CT-1", "名称", "电流互感器", "数量", "3",
                "型号", f"RX-{d}", "编码", f"R{d}", "名称", "继电器", "数量", "2"])
    doc.saveas(path, encoding="utf-8")


def secondary(path, index):
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    add_title(doc, msp, f"S-{index:04d}", "二次原理图")
    for r in range(5):
        add_row(doc, msp, 100 - 8 * r, f"{r + 1}KA", str(r + 1), f"RX-{r}", f"R{r}", "继电器", "1")
    doc.saveas(path, encoding="utf-8")


def device(path, cabinet):
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    for r in range(10):
        label = f"{r + 1}HL"
        add_row(doc, msp, 100 - 8 * r, label, f"Z{r + 1}", f"AD16-{r}", f"L{r}", "指示灯", "1", records={
            "QXBOM_LABEL": [f"标号:{label}", f"序号:{r + 1}", "板号:B1"],
            "QXBOM_COMPONENT": [f"标号:{label}", "名称:灯泡", "编码:P1", "型号:T1", "数量:1"]})
    doc.saveas(path, encoding="utf-8")


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    scale = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    cabinets, secondaries = 100 * scale, 200 * scale
    project = os.path.join(sys.argv[1], "Project")
    os.makedirs(os.path.join(project, "Secondary"), exist_ok=True)
    with open(os.path.join(project, "Project.itm"), "wb") as f:
        f.write(b"$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF")
    primary(os.path.join(project, "一次系统图.dwg"), cabinets, secondaries)
    for i in range(secondaries):
        secondary(os.path.join(project, "Secondary", f"S{i:04d}.dwg"), i)
    for c in range(cabinets):
        name = f"K{c + 1:03d}"
        os.makedirs(os.path.join(project, name), exist_ok=True)
        write_prj(os.path.join(project, name, name + ".prj"), name)
        device(os.path.join(project, name, name + ".dwg"), name)


if __name__ == "__main__":
    main()
