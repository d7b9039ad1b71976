#!/usr/bin/python3
"""Makes the DXF fixtures of the drawing reader's tests with ezdxf, an independent DXF writer.

Run from anywhere: python3 tests/data/dxf/make_fixtures.py. The files it writes are committed beside it.
Every drawing holds the same content, written in several DXF versions and encodings:
  sample_r2000.dxf  AC1015, $DWGCODEPAGE ANSI_936: Chinese text as GBK bytes
  sample_r2004.dxf  AC1018, ANSI_1252: Chinese text as \\U+XXXX escapes
  sample_r2018.dxf  AC1032: UTF-8
  sample_r12.dxf    AC1009: no objects section, old-style polylines
  nohandles_r12.dxf the R12 file with every handle taken out
and broken files made from sample_r2000.dxf (see make_broken); details_r2018.dxf holds groups that are
easy to misread (see make_details).
"""
import math
import os
import re

import ezdxf

HERE = os.path.dirname(os.path.abspath(__file__))

APPS = ["QXBOM_LABEL", "QXBOM_LABEL_TYPEHANDLE", "QXBOM_TYPE", "QXBOM_TYPE_LABELHANDLE", "QXBOM_CODE",
        "QX_SYS_HEAD_ITEMNAME", "QX_Circuit1_No", "QX_SYMB2_MULTI", "QX_KINDS", "QX_DANGLING"]

LONG_TEXT = "{\\fSimSun|b0;" + "开关柜二次原理图说明" * 30 + "}\\P第二行"


def build(version, encoding=None):
    doc = ezdxf.new(version)
    if encoding:
        doc.encoding = encoding  # ezdxf writes $DWGCODEPAGE from it
    for app in APPS:
        doc.appids.new(app)
    msp = doc.modelspace()
    r12 = version == "R12"

    # Block definitions: a nested one, a circuit block with its marker, and an anonymous one.
    sub = doc.blocks.new("SUB")
    sub.add_circle((0, 0), 1)
    circuit = doc.blocks.new("CIRCUIT", base_point=(1, 1))
    circuit.add_line((1, 1), (5, 3))
    circuit.add_arc((1, 1), 2, 0, 90)
    if r12:
        circuit.add_polyline2d([(0.5, 1, 1), (1.5, 1, 1)], format="xyb", close=True)
    else:
        circuit.add_lwpolyline([(0.5, 1, 0, 0, 1), (1.5, 1, 0, 0, 1)], format="xyseb", close=True)
    circuit.add_blockref("SUB", (10, 1))
    circuit.add_attdef("位号", (2, 2), text="QF1")
    anonymous = doc.blocks.new_anonymous_block()
    anonymous.add_solid([(0, 0), (4, 0), (0, 2), (4, 2)])

    # Model space in drawing order.
    head = msp.add_text("一次额定电压:10kV", dxfattribs={"insert": (0, 100)})
    head.set_xdata("QX_SYS_HEAD_ITEMNAME", [(1000, "一次额定电压")])

    def add_cell(text, insert):
        """MTEXT where the version has it, else TEXT."""
        if r12:
            return msp.add_text(text, dxfattribs={"insert": insert})
        cell = msp.add_mtext(text)
        cell.dxf.insert = insert
        return cell

    label = add_cell("QF1", (10, 50))
    cell = add_cell("{\\fSimSun|b0;断路器}", (30, 50))
    label.set_xdata("QXBOM_LABEL", [(1000, "")])
    label.set_xdata("QXBOM_LABEL_TYPEHANDLE", [(1005, "00" + cell.dxf.handle.lower())])
    cell.set_xdata("QXBOM_TYPE", [(1000, "")])
    cell.set_xdata("QXBOM_TYPE_LABELHANDLE", [(1005, label.dxf.handle)])
    cell.set_xdata("QXBOM_CODE", [(1000, "C-001 主")])

    ref = msp.add_blockref("CIRCUIT", (100, 200), dxfattribs={"xscale": 2, "yscale": 2, "rotation": 90})
    ref.set_xdata("QX_Circuit1_No", [(1000, "2＠K03『x』")])
    ref.set_xdata("QX_KINDS", [(1000, "文"), (1005, "1F"), (1010, (1, 2, 3)), (1040, 2.5), (1070, 7), (1071, 70000)])
    ref.set_xdata("QX_DANGLING", [(1005, "FFFFF")])
    msp.add_blockref(anonymous.name, (0, 0)).set_xdata("QX_SYMB2_MULTI", [(1000, "1")])
    add_cell(LONG_TEXT, (0, -50))
    if r12:
        msp.add_polyline2d([(0, 0, 0.5), (10, 0, 0), (10, 10, 0)], format="xyb")
    else:
        msp.add_polyline2d([(0, 0, 0.5), (10, 0, 0), (10, 10, 0)], format="xyb")
        msp.add_lwpolyline([(0, 0, 0, 0, 0), (3, 4, 0, 0, -1)], format="xyseb")
    doc.layout("Layout1").add_text("图纸空间", dxfattribs={"insert": (1, 1)})

    if not r12:
        xdict = ref.new_extension_dict()
        bom = xdict.add_xrecord("QX_CIRCUI1_BOMRECORD")
        bom.reset([(1, "型号"), (1, "NSX100F"), (1, "数量"), (1, "2")])
        padded = xdict.add_xrecord(" QX_CIRCUI1_NewAddInfo ")
        padded.reset([(1, "附加"), (40, 1.5), (10, (4, 5, 6)), (70, 3)])
        label_dict = label.new_extension_dict()
        label_dict.add_xrecord("QXBOM_LABEL").reset([(1, "标号:QF1"), (1, "序号:1")])
        location = doc.rootdict.add_new_dict("QX_DWG_DICITIONARY")
        location.add_xrecord("QX_LOCATION_XRECORD").reset([(1, "安装 位置"), (1, "A柜")])
    return doc


def write(doc, name):
    doc.saveas(os.path.join(HERE, name))


def strip_handles(text):
    """Takes out every group 5 and 105 and sets $HANDLING to 0, as old R12 writers did."""
    lines = text.split("\n")
    out = []
    i = 0
    while i + 1 < len(lines):
        code, value = lines[i], lines[i + 1]
        if code.strip() in ("5", "105"):
            i += 2
            continue
        out += [code, value]
        i += 2
    out += lines[i:]
    result = "\n".join(out)
    return re.sub(r"\$HANDLING\r?\n\s*70\r?\n\s*1", "$HANDLING\n 70\n0", result)


def make_broken(source):
    raw = open(os.path.join(HERE, source), "rb").read()
    entities = raw.index(b"ENTITIES")

    def save(name, data):
        with open(os.path.join(HERE, name), "wb") as f:
            f.write(data)

    # Cut short in the middle of the entities.
    save("broken_truncated.dxf", raw[: entities + (len(raw) - entities) // 3])
    # A group code line that is no number.
    save("broken_groupcode.dxf", raw.replace(b"ENTITIES\r\n  0\r\n", b"ENTITIES\r\nxyz\r\n", 1)
         if b"ENTITIES\r\n  0\r\n" in raw else raw.replace(b"ENTITIES\n  0\n", b"ENTITIES\nxyz\n", 1))
    # The text's insertion x is no number: that entity alone is passed over.
    head = raw.index(b"QX_SYS_HEAD_ITEMNAME", entities) if b"QX_SYS_HEAD_ITEMNAME" in raw[entities:] else entities
    start = raw.rfind(b"TEXT", entities, head)
    x = re.compile(rb"(\n 10\r?\n)([-0-9.]+)").search(raw, start)
    save("broken_number.dxf", raw[: x.start(2)] + b"ten" + raw[x.end(2):])
    # Not a DXF at all: the first bytes of a DWG.
    save("broken_binary.dwg", b"AC1032\x00\x00\x00\x00\x00\x01\xff\xfe" + bytes(range(256)) * 4)
    save("broken_empty.dxf", b"")


def make_cycle():
    """Two dictionaries that hold each other, and an entity whose extension dictionary is missing."""
    doc = ezdxf.new("R2000")
    first = doc.rootdict.add_new_dict("CYCLE_A")
    second = first.add_new_dict("CYCLE_B")
    second["BACK"] = first
    msp = doc.modelspace()
    text = msp.add_text("lost")
    text.new_extension_dict().add_xrecord("X").reset([(1, "y")])
    write(doc, "broken_links.dxf")
    raw = open(os.path.join(HERE, "broken_links.dxf"), "rb").read()
    # Point the text's extension dictionary at a handle nobody has.
    xdict = text.get_extension_dict().dictionary.dxf.handle.encode()
    raw = raw.replace(b"{ACAD_XDICTIONARY\r\n360\r\n" + xdict, b"{ACAD_XDICTIONARY\r\n360\r\nABCDEF", 1)
    raw = raw.replace(b"{ACAD_XDICTIONARY\n360\n" + xdict, b"{ACAD_XDICTIONARY\n360\nABCDEF", 1)
    open(os.path.join(HERE, "broken_links.dxf"), "wb").write(raw)


def make_details():
    """Groups that are easy to misread: a multi-line attribute definition with its embedded MTEXT, 3D
    polylines and meshes, xrecord reals of codes 38 and 39."""
    doc = ezdxf.new("R2018")
    block = doc.blocks.new("ATTBLOCK")
    attdef = block.add_attdef("备注", (5, 6), text="single")
    embedded = ezdxf.entities.MText.new(dxfattribs={"insert": (5, 6, 0)})
    embedded.text = "第一行\\P第二行"
    attdef.set_mtext(embedded)
    # The definition's own place differs from the embedded text's.
    attdef.dxf.insert = (1, 2, 0)
    attdef.dxf.text = "第一行"
    msp = doc.modelspace()
    msp.add_polyline3d([(0, 0, 0), (1, 2, 3), (4, 5, -6)])
    mesh = msp.add_polymesh(size=(2, 2))
    for (m, n), z in {(0, 0): 1, (0, 1): 2, (1, 0): 3, (1, 1): -4}.items():
        mesh.set_mesh_vertex((m, n), (m * 10, n * 10, z))
    faces = msp.add_polyface()
    faces.append_face([(0, 0, 7), (2, 0, 7), (2, 2, 8)])
    msp.add_blockref("ATTBLOCK", (0, 0))
    details = doc.rootdict.add_new_dict("QX_DETAILS")
    details.add_xrecord("REALS").reset([(1, "x"), (38, 1.25), (39, 2.5), (10, (1, 2, 3))])
    write(doc, "details_r2018.dxf")


def make_shapes():
    """Block definitions that hold only text, MText, an ellipse, a spline or a hatch, each labelled as a
    first-class symbol by its reference; and the circuit marker's shape as an old-style 2D POLYLINE, in an
    R12 file (the host converts it on open) and an R2000 file (kept as it is)."""
    doc = ezdxf.new("R2000")
    msp = doc.modelspace()
    doc.appids.new("QX_SYMB1_LABEL")

    def symbol(name, x):
        ref = msp.add_blockref(name, (x, 0))
        ref.set_xdata("QX_SYMB1_LABEL", [(1000, name)])

    doc.blocks.new("ONLY_TEXT").add_text("KA1", dxfattribs={"height": 3, "insert": (1, 2)})
    doc.blocks.new("ONLY_MTEXT").add_mtext("第一行\\P二", dxfattribs={"char_height": 2, "insert": (0, 0),
                                                                    "attachment_point": 7})
    doc.blocks.new("ONLY_ELLIPSE").add_ellipse((0, 0), major_axis=(4, 0), ratio=0.5, start_param=0,
                                               end_param=math.pi)
    doc.blocks.new("ONLY_SPLINE").add_spline(fit_points=[(0, 0), (2, 3), (5, -1)])
    polygon = doc.blocks.new("ONLY_HATCH").add_hatch()
    polygon.paths.add_polyline_path([(0, 0), (6, 0), (6, 2)], is_closed=True)
    edges = doc.blocks.new("ONLY_EDGE_HATCH").add_hatch()
    path = edges.paths.add_edge_path()
    path.add_line((0, 0), (2, 0))
    path.add_arc((1, 0), radius=1, start_angle=0, end_angle=180)
    for x, name in enumerate(("ONLY_TEXT", "ONLY_MTEXT", "ONLY_ELLIPSE", "ONLY_SPLINE", "ONLY_HATCH",
                              "ONLY_EDGE_HATCH")):
        symbol(name, 100 * x)
    doc.saveas(os.path.join(HERE, "shapes_r2000.dxf"))

    for version, name in (("R12", "oldmarker_r12.dxf"), ("R2000", "oldmarker_r2000.dxf")):
        doc = ezdxf.new(version)
        block = doc.blocks.new("CIR")
        block.add_polyline2d([(-0.5, 0, 0, 0, 1.0), (0.5, 0, 0, 0, 1.0)], format="xyseb", close=True)
        doc.modelspace().add_blockref("CIR", (0, 0))
        doc.saveas(os.path.join(HERE, name))


def main():
    write(build("R2000", "gbk"), "sample_r2000.dxf")
    write(build("R2004", "cp1252"), "sample_r2004.dxf")
    write(build("R2018"), "sample_r2018.dxf")
    write(build("R12", "gbk"), "sample_r12.dxf")
    r12 = open(os.path.join(HERE, "sample_r12.dxf"), "rb").read().decode("gbk")
    open(os.path.join(HERE, "nohandles_r12.dxf"), "wb").write(strip_handles(r12).encode("gbk"))
    make_broken("sample_r2000.dxf")
    make_cycle()
    make_details()
    make_shapes()


if __name__ == "__main__":
    main()
