#!/usr/bin/python3
"""Writes the DXF fixtures of the cabinet assembly tests with ezdxf, an independent DXF writer.

    /usr/bin/python3 tests/data/assembly/make_fixtures.py

primary.dxf is a primary diagram whose circuits cover the ways a cabinet group is built: two drawers of
one cabinet, a plain circuit with its BOM record on the reference, references of one master symbol, and
two plain circuits of one number. sec_s1/s2/s3.dxf are the secondary drawings its circuits name (the tests
put them in a folder "Secondary" below the primary drawing, so the moved paths resolve there); sec_s4.dxf
has a title block with a name and no number.
device_a.dxf and device_b.dxf are the two drawings of one device, with label records and components;
device_c.dxf has one table row of count 1 for two labels.
shared_block.dxf is a primary diagram whose two circuits share one block definition without a marker,
and a circuit whose symbols name a master that does not list them.
"""
import os

import ezdxf

HERE = os.path.dirname(os.path.abspath(__file__))


def appid(doc, name):
    if name not in doc.appids:
        doc.appids.new(name)
    return name


def set_value(doc, entity, app, value):
    entity.set_xdata(appid(doc, app), [(1000, value)])


def add_xrecord(entity, name, strings):
    xdict = entity.get_extension_dict() if entity.has_extension_dict else entity.new_extension_dict()
    xdict.add_xrecord(name).reset([(1, s) for s in strings])


def add_title_block(doc, msp, number, name):
    block = doc.blocks.new("TITLE_A3")
    block.add_lwpolyline([(0, 0), (180, 0), (180, 30), (0, 30)], close=True)
    title = msp.add_blockref("TITLE_A3", (0, -40))
    set_value(doc, title, "HORSIZE_OF_DRAWING", "420")
    add_xrecord(title, "CORVANE_TITLE", ["$BEGINETITLE", "A3", "图号|10|25|60|5|0|0|", "图名|70|25|170|5|0|0|",
                                         "$ENDTITLE"])
    msp.add_text(number).set_placement((20, -28))
    msp.add_text(name).set_placement((90, -28))


def add_bom_row(doc, msp, y, label, number, model, code, name, count, note="", location=None, records=None):
    """A table row anchored in its label cell; every link has its back link."""
    texts = [("LABEL", label), ("NO", number), ("TYPE", model), ("NAME", name), ("COUNT", count),
             ("NOTE", note or " ")]
    if location is not None:
        texts.append(("LOCATION", location))
    cells = {key: msp.add_mtext(text, dxfattribs={"insert": (20 * i, y)}) for i, (key, text) in enumerate(texts)}
    anchor = cells["LABEL"]
    anchor.set_xdata(appid(doc, "QXBOM_LABEL"), [(1000, label)])
    for key in cells:
        if key == "LABEL":
            continue
        forward = "QXBOM_LABEL_NOHANDLE" if key == "NO" else f"QXBOM_LABEL_{key}HANDLE"
        anchor.set_xdata(appid(doc, forward), [(1005, cells[key].dxf.handle)])
        cells[key].set_xdata(appid(doc, f"QXBOM_{key}_LABELHANDLE"), [(1005, anchor.dxf.handle)])
    if code:
        set_value(doc, cells["TYPE"], "QXBOM_CODE", code)
    set_value(doc, cells["TYPE"], "QXBOM_PRICE", "12.5")
    set_value(doc, cells["TYPE"], "QXBOM_DEVICETYPE", "继电器类")
    for name_, lines in (records or {}).items():
        add_xrecord(anchor, name_, lines)
    return anchor


def set_circuit(doc, entity, number, use, secondary):
    set_value(doc, entity, "QX_Circuit1_No", number)
    set_value(doc, entity, "QX_Circuit1_GroupCode", "＠G1")
    set_value(doc, entity, "QX_Circuit1_Use", f"＠{use}")
    set_value(doc, entity, "QX_Circuit1_Type", "＠KYN28")
    set_value(doc, entity, "QX_Circuit1_Cir1Voltage", "＠10kV")
    annotation = f"『D:\\old\\Secondary\\{secondary}』" if secondary else ""
    set_value(doc, entity, "QX_Circuit1_Cir2Voltage", f"＠DC220V{annotation}")
    set_value(doc, entity, "QX_Circuit1_MuXianType", "＠TMY")


def primary():
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    symbol = doc.blocks.new("SYMBOL")
    symbol.add_line((0, 0), (0, 10))
    symbol.add_line((0, 0), (5, 0))

    # Drawer 1 of K01: two first-class symbols nested in the definition, no marker yet.
    cir_a = doc.blocks.new("CIR_A", base_point=(10, 20))
    cir_a.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    breaker = cir_a.add_blockref("SYMBOL", (20, 60))
    set_value(doc, breaker, "QX_SYMB1_TYPE", "NSX100")
    set_value(doc, breaker, "QX_SYMB1_CODE", "C100")
    set_value(doc, breaker, "QX_SYMB1_NAME", "断路器")
    transformer = cir_a.add_blockref("SYMBOL", (20, 80))
    set_value(doc, transformer, "QX_SYMB1_TYPE", "CT-1")
    set_value(doc, transformer, "QX_SYMB1_NAME", "互感器")
    set_circuit(doc, msp.add_blockref("CIR_A", (0, 0)), "1＠K01", "进线", "S1.dwg")

    # Drawer 2 of K01: the BOM record sits on the marker inside the definition.
    cir_b = doc.blocks.new("CIR_B")
    cir_b.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    marker = cir_b.add_lwpolyline([(-0.5, 0, 0, 0, 1.0), (0.5, 0, 0, 0, 1.0)], format="xyseb", close=True)
    add_xrecord(marker, "QX_CIRCUI1_BOMRECORD", ["型号", "RX-1", "编码", "R1", "名称", "继电器", "数量", "1"])
    set_circuit(doc, msp.add_blockref("CIR_B", (60, 0)), "2＠K01", "出线", "S2.dwg")

    # K02: the record on the reference; one part written twice in different case.
    plain = doc.blocks.new("CIR_PLAIN")
    plain.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    k02 = msp.add_blockref("CIR_PLAIN", (120, 0))
    set_circuit(doc, k02, "K02", "计量", "S3.dwg")
    add_xrecord(k02, "QX_CIRCUI1_BOMRECORD", ["型号", "X1", "编码", "E1", "名称", "N1", "数量", "2",
                                               "型号", "x1", "编码", "e1", "名称", "n1", "数量", "1"])

    # K03: two symbols of one master count once. K04: two symbols without a master count twice.
    master = msp.add_circle((200, 200), 1)
    k03 = [msp.add_blockref("SYMBOL", (180 + 10 * i, 0)) for i in range(2)]
    k04 = [msp.add_blockref("SYMBOL", (180 + 10 * i, 40)) for i in range(2)]
    for ref, number in [(r, "K03") for r in k03] + [(r, "K04") for r in k04]:
        set_circuit(doc, ref, number, "指示", None)
        set_value(doc, ref, "QX_SYMB1_TYPE", "AD16")
        set_value(doc, ref, "QX_SYMB1_CODE", "L1")
        set_value(doc, ref, "QX_SYMB1_NAME", "指示灯")
    master.set_xdata(appid(doc, "QX_SYMB1_TYPEHANDLE"), [(1005, r.dxf.handle) for r in k03])
    for ref in k03:
        ref.set_xdata(appid(doc, "QX_SYMB1_TYPEHANDLE"), [(1005, master.dxf.handle)])

    # Two plain circuits of one number (their uses differ): two groups named K05.
    for i, use in enumerate(("备用一", "备用二")):
        set_circuit(doc, msp.add_blockref("CIR_PLAIN", (260 + 60 * i, 0)), "K05", use, None)
    doc.saveas(os.path.join(HERE, "primary.dxf"), encoding="utf-8")


def shared_block():
    """Two circuits of one block definition that holds two first-class symbols and no marker."""
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    symbol = doc.blocks.new("SYMBOL")
    symbol.add_line((0, 0), (0, 10))
    shared = doc.blocks.new("CIR_SHARED")
    shared.add_lwpolyline([(0, 0), (40, 0), (40, 120), (0, 120)], close=True)
    for y, (model, code, name) in ((40, ("NSX100", "C100", "断路器")), (80, ("CT-1", "T1", "互感器"))):
        nested = shared.add_blockref("SYMBOL", (20, y))
        set_value(doc, nested, "QX_SYMB1_TYPE", model)
        set_value(doc, nested, "QX_SYMB1_CODE", code)
        set_value(doc, nested, "QX_SYMB1_NAME", name)
    for i, number in enumerate(("K11", "K12")):
        set_circuit(doc, msp.add_blockref("CIR_SHARED", (60 * i, 0)), number, "出线", None)
    # K13: two symbols name a master that does not list them: no key, so they count twice.
    master = msp.add_circle((200, 200), 1)
    for i in range(2):
        ref = msp.add_blockref("SYMBOL", (180 + 10 * i, 0))
        set_circuit(doc, ref, "K13", "指示", None)
        set_value(doc, ref, "QX_SYMB1_TYPE", "AD16")
        set_value(doc, ref, "QX_SYMB1_CODE", "L1")
        set_value(doc, ref, "QX_SYMB1_NAME", "指示灯")
        ref.set_xdata(appid(doc, "QX_SYMB1_TYPEHANDLE"), [(1005, master.dxf.handle)])
    master.set_xdata(appid(doc, "QX_SYMB1_TYPEHANDLE"), [(1005, master.dxf.handle)])
    doc.saveas(os.path.join(HERE, "shared_block.dxf"), encoding="utf-8")


def secondary(name, title, rows):
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    if title:
        add_title_block(doc, msp, *title)
    for i, row in enumerate(rows):
        add_bom_row(doc, msp, 100 - 8 * i, *row)
    doc.saveas(os.path.join(HERE, name), encoding="utf-8")


def set_location(doc, items):
    own = doc.rootdict.add_new_dict("QX_DWG_DICITIONARY")
    own.add_xrecord("QX_LOCATION_XRECORD").reset([(1, s) for s in items])


def device(name, location, rows):
    doc = ezdxf.new("R2010")
    msp = doc.modelspace()
    set_location(doc, ["安装 位置", location])
    for i, row in enumerate(rows):
        add_bom_row(doc, msp, 100 - 8 * i, **row)
    doc.saveas(os.path.join(HERE, name), encoding="utf-8")


def main():
    primary()
    shared_block()
    secondary("sec_s1.dxf", ("S-001", "进线二次"), [
        ("1QF", "1", "NSX100", "C100", "断路器", "1"),      # counted by the primary diagram: filtered
        ("1KA", "2", "RX-1", "R1", "继电器", "2")])
    secondary("sec_s2.dxf", None, [
        ("2KA", "1", "rx-1", "r1", "继电器", "1"),          # the marker's part, in other case: filtered
        ("2HL", "2", "AD16", "L1", "指示灯", "3")])
    secondary("sec_s3.dxf", ("S-003", "计量二次"), [("3KA", "1", "RX-1", "R1", "继电器", "1")])
    secondary("sec_s4.dxf", ("", "只有图名"), [])  # no number: the name stands in
    device("device_a.dxf", "+A1", [
        dict(label="1KA", number="Z1", model="RX-1", code="R1", name="继电器", count="2", records={
            "QXBOM_LABEL": ["标号:1KA", "序号:1", "板号:B1", "接线图章组件:STAMP::", "合并过的标号数组:1KA,2KA",
                            "标号:2KA", "序号:2"],
            "QXBOM_COMPONENT": ["标号:1KA", "名称:线圈", "编码:C1", "型号:T1", "数量:1"]}),
        dict(label="3HL", number="A12", model="AD16", code="L1", name="指示灯", count="1",
             records={"QXBOM_LABEL": ["标号:3HL"]}),
        dict(label="4QF", number="3", model="NSX100", code="C100", name="断路器", count="1", location="+B2",
             records={"QXBOM_LABEL": ["标号:4QF"]})])
    device("device_b.dxf", "+A1", [
        dict(label="1KA", number="4", model="RX-2", code="R2", name="继电器", count="1", records={
            "QXBOM_LABEL": ["标号:1KA"],
            "QXBOM_COMPONENT": ["标号:1KA", "名称:触点", "编码:C2", "型号:T2", "数量:4"]})])
    device_c()


def device_c():
    # Two labels merged into one table row of count 1: each label's row is a part of its own.
    device("device_c.dxf", "+C1", [dict(label="7KA", number="1", model="RX-3", code="R3", name="继电器", count="1",
                                        records={"QXBOM_LABEL": ["标号:7KA", "标号:8KA"]})])


if __name__ == "__main__":
    main()
