#!/usr/bin/python3
"""Writes the sample project of the demo: a substation with a primary one-line diagram and three cabinets.

Usage: make_sample_project.py PROJECTS_FOLDER [INSTALL_FOLDER]

The drawings are DXF files named .dwg, as the system reads them, written by ezdxf. They carry the data the
system extracts: head texts, a title block with its cell table, circuit blocks with their attributes and
BOM records, and in the cabinet drawings a BOM table of linked MText cells. The project and device files are
written as the Windows application writes them: legacy code page (GB18030), CR LF.
With INSTALL_FOLDER, the project becomes the current one (Data/recent.dat) and the install folder gets the
template drawing that new devices start from (Support/TEMPLATE/图纸.DWG).
"""
import os
import sys

import ezdxf

PROJECT = "华东变电站"
CABINETS = [
    # number as stored, use, type, cabinet name, size
    ("K01", "进线", "KYN28A-12", "1#进线柜", "800×1500×2300"),
    ("1＠K02", "出线", "KYN28A-12", "馈线柜", "800×1500×2300"),
    ("2＠K02", "出线", "KYN28A-12", "馈线柜", "800×1500×2300"),
    ("K03", "计量", "KYN28A-12", "计量柜", "800×1500×2300"),
]
PRIMARY_PARTS = {
    "进线": [("VS1-12/1250", "DL-1001", "真空断路器", "1"), ("LZZBJ9-10", "CT-2001", "电流互感器", "3")],
    "出线": [("VS1-12/630", "DL-1002", "真空断路器", "1"), ("LZZBJ9-10", "CT-2001", "电流互感器", "2")],
    "计量": [("JDZ10-10", "PT-3001", "电压互感器", "2")],
}
SECONDARY_ROWS = [
    # label, number, type, code, name, count, note
    ("1QF", "1", "DZ47-60/2P C6", "ZK-0601", "微型断路器", "2", ""),
    ("1KA", "2", "JL-8GA", "JD-1101", "电流继电器", "3", "过流"),
    ("1HD", "3", "AD16-22", "ZS-0201", "指示灯", "1", "红色"),
]


def write_legacy(path, lines, final_line_end=True):
    text = "\r\n".join(lines) + ("\r\n" if final_line_end else "")
    with open(path, "wb") as f:
        f.write(text.encode("gb18030"))


def project_file(path, notes):
    lines = ["$BEGIN NOTE OF PRJ"]
    for name, value in notes:
        lines += ["$BEGIN_ONE_NOTE", name, value, "$END_ONE_NOTE"]
    lines += ["$END NOTE OF PRJ", "$BEGIN CONTENT OF PRJ", "$END CONTENT OF PRJ", "$EOF"]
    write_legacy(path, lines)


def new_drawing():
    doc = ezdxf.new("R2010")
    return doc, doc.modelspace()


def appid(doc, name):
    if name not in doc.appids:
        doc.appids.new(name)
    return name


def set_value(doc, entity, app, value):
    entity.set_xdata(appid(doc, app), [(1000, value)])


def set_link(doc, entity, app, target):
    entity.set_xdata(appid(doc, app), [(1005, target.dxf.handle)])


def add_xrecord(entity, name, strings):
    xdict = entity.get_extension_dict() if entity.has_extension_dict else entity.new_extension_dict()
    record = xdict.add_xrecord(name)
    record.reset([(1, s) for s in strings])


def add_title_block(doc, msp, number, name, origin=(0, 0)):
    block = doc.blocks.new("CORVANE_TITLE_A3")
    block.add_lwpolyline([(0, 0), (180, 0), (180, 30), (0, 30)], close=True)
    title = msp.add_blockref("CORVANE_TITLE_A3", origin)
    for app in ("HORSIZE_OF_DRAWING", "VERSIZE_OF_DRAWING", "HORNUM_OF_TABLE", "VERNUM_OF_TABLE", "X1"):
        set_value(doc, title, app, "1")
    add_xrecord(title, "CORVANE_TITLE", ["$BEGINETITLE", "A3", "图 号|10|25|60|5|0|0|", "图纸名称|70|25|170|5|0|0|", "$ENDTITLE"])
    msp.add_text(number, dxfattribs={"height": 3.5}).set_placement((origin[0] + 20, origin[1] + 12))
    msp.add_text(name, dxfattribs={"height": 3.5}).set_placement((origin[0] + 90, origin[1] + 12))


def primary_diagram(path, project_folder):
    doc, msp = new_drawing()
    symbol = doc.blocks.new("QF_SYMBOL")
    symbol.add_line((0, 0), (0, 10))
    symbol.add_arc((0, 5), 2, 90, 270)
    circuit = doc.blocks.new("CIRCUIT_PANEL")
    circuit.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    nested = circuit.add_blockref("QF_SYMBOL", (20, 60))
    set_value(doc, nested, "QX_SYMB1_TYPE", "VS1-12")
    set_value(doc, nested, "QX_SYMB1_CODE", "DL-1000")
    set_value(doc, nested, "QX_SYMB1_NAME", "真空断路器")

    for label, value in (("一次额定电压", "10kV"), ("母线规格", "TMY-3×(80×8)"), ("二次额定电压", "DC220V")):
        text = msp.add_text(f"{label}: {value}", dxfattribs={"height": 3.5})
        text.set_placement((0, 200 - 6 * len(msp)))
        set_value(doc, text, "QX_SYS_HEAD_ITEMNAME", label)
    add_title_block(doc, msp, "HD-YC-01", "10kV一次系统图", origin=(0, -40))

    for index, (number, use, kind, _, _) in enumerate(CABINETS):
        panel = msp.add_blockref("CIRCUIT_PANEL", (60 * index, 20))
        cabinet = number.split("＠")[-1]
        secondary = os.path.join(project_folder, cabinet, f"{cabinet}二次原理图.dwg").replace("/", "\\")
        set_value(doc, panel, "QX_Circuit1_No", number)
        set_value(doc, panel, "QX_Circuit1_GroupCode", "＠G1")
        set_value(doc, panel, "QX_Circuit1_Use", f"＠{use}")
        set_value(doc, panel, "QX_Circuit1_Type", f"＠{kind}")
        set_value(doc, panel, "QX_Circuit1_Cir1Voltage", "＠10kV")
        set_value(doc, panel, "QX_Circuit1_Cir2Voltage", f"＠DC220V『{secondary}』")
        set_value(doc, panel, "QX_Circuit1_MuXianType", "＠TMY")
        set_value(doc, panel, "QX_Circuit1_TankCirNo", f"＠{index + 1}")
        panel.set_xdata(appid(doc, "QX_CIRCUIT1_EXATTRIBUTE"), [
            (1000, f"＠柜排列|||{index + 1}"), (1000, "＠额定电流|||1250A"), (1000, f"＠回路名称|||{use}{index + 1}")])
        pairs = []
        for model, code, name, count in PRIMARY_PARTS[use]:
            pairs += ["型号", model, "编码", code, "名称", name, "数量", count, "单价", "0"]
        add_xrecord(panel, "QX_CIRCUI1_BOMRECORD", pairs)
        add_xrecord(panel, "QX_CIRCUI1_NewAddInfo", [])
    doc.saveas(path, encoding="utf-8")


def secondary_drawing(path, cabinet):
    doc, msp = new_drawing()
    add_title_block(doc, msp, f"HD-EC-{cabinet}", f"{cabinet}二次原理图", origin=(0, -40))
    y = 100
    for label, number, model, code, name, count, note in SECONDARY_ROWS:
        cells = {}
        for column, (key, text) in enumerate((("LABEL", label), ("NO", number), ("TYPE", model), ("NAME", name),
                                              ("COUNT", count), ("NOTE", note or " "))):
            cells[key] = msp.add_mtext(text, dxfattribs={"insert": (20 * column, y), "char_height": 2.5})
        y -= 8
        anchor = cells["LABEL"]
        anchor.set_xdata(appid(doc, "QXBOM_LABEL"), [(1000, label)])
        for key in ("NO", "TYPE", "NAME", "COUNT", "NOTE"):
            forward = f"QXBOM_LABEL_{key}HANDLE" if key != "NO" else "QXBOM_LABEL_NOHANDLE"
            anchor.set_xdata(appid(doc, forward), [(1005, cells[key].dxf.handle)])
            cells[key].set_xdata(appid(doc, f"QXBOM_{key}_LABELHANDLE"), [(1005, anchor.dxf.handle)])
        set_value(doc, cells["TYPE"], "QXBOM_CODE", code)
        set_value(doc, cells["TYPE"], "QXBOM_PRICE", "0")
        set_value(doc, cells["TYPE"], "QXBOM_DEVICETYPE", name)
        add_xrecord(anchor, "QXBOM_LABEL", [f"标号:{label}", f"序号:{number}", "板号:1", "板名:前面板", "板前板后:板前"])
        add_xrecord(anchor, "QXBOM_COMPONENT", [f"标号:{label}", f"名称:{name}", f"编码:{code}", f"型号:{model}", f"数量:{count}"])
    doc.saveas(path, encoding="utf-8")


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    projects = os.path.abspath(sys.argv[1])
    folder = os.path.join(projects, PROJECT)
    os.makedirs(folder, exist_ok=True)
    windows_folder = "\\" + folder.strip("/").replace("/", "\\")
    project_file(os.path.join(folder, f"{PROJECT}.itm"), [("工程名称", PROJECT), ("工程编号", "HD-2026-01"), ("设计单位", "华东电力设计院")])
    primary_diagram(os.path.join(folder, "一次系统图.dwg"), windows_folder)
    for number, use, kind, name, size in CABINETS:
        cabinet = number.split("＠")[-1]
        device = os.path.join(folder, cabinet)
        if os.path.exists(os.path.join(device, f"{cabinet}.prj")):
            continue
        os.makedirs(device, exist_ok=True)
        project_file(os.path.join(device, f"{cabinet}.prj"),
                     [("制造厂家", "华东开关厂"), ("柜编号", cabinet), ("柜名称", name), ("柜型号", kind), ("柜体尺寸", size)])
        secondary_drawing(os.path.join(device, f"{cabinet}二次原理图.dwg"), cabinet)
    if len(sys.argv) == 3:
        data = os.path.join(sys.argv[2], "Data")
        os.makedirs(data, exist_ok=True)
        with open(os.path.join(data, "recent.dat"), "wb") as f:
            f.write(f"{windows_folder}\\{PROJECT}.itm".encode("gb18030"))
        template = os.path.join(sys.argv[2], "Support", "TEMPLATE")
        os.makedirs(template, exist_ok=True)
        doc, msp = new_drawing()
        add_title_block(doc, msp, "", "", origin=(0, 0))
        doc.saveas(os.path.join(template, "图纸.DWG"), encoding="utf-8")
    print(os.path.join(folder, f"{PROJECT}.itm"))


if __name__ == "__main__":
    main()
