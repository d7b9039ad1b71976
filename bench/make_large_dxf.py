#!/usr/bin/python3
"""Writes a large DXF (R2018, UTF-8) for the reader benchmark: BOM tables of linked MText cells and circuit
block references, every one carrying xdata, 1005 links and (for the labels) an extension dictionary with
an xrecord, as the application stores them.

Usage: make_large_dxf.py OUTPUT [UNITS]   (one unit: three MText cells, one insert, one dictionary,
one xrecord; 60000 units by default, about 90 MB)
"""
import sys


class Writer:
    def __init__(self, out):
        self.out = out
        self.buffer = []
        self.next_handle = 0x100

    def handle(self):
        h = self.next_handle
        self.next_handle += 1
        return "%X" % h

    def tags(self, *pairs):
        for code, value in pairs:
            self.buffer.append("%3d\n%s\n" % (code, value))
        if len(self.buffer) > 20000:
            self.flush()

    def flush(self):
        self.out.write("".join(self.buffer))
        self.buffer = []


MODEL, PAPER, CIRCUIT = "1F", "1E", "20"


def header(w, seed):
    w.tags((0, "SECTION"), (2, "HEADER"), (9, "$ACADVER"), (1, "AC1032"), (9, "$HANDSEED"), (5, seed),
           (0, "ENDSEC"))
    w.tags((0, "SECTION"), (2, "TABLES"), (0, "TABLE"), (2, "BLOCK_RECORD"), (5, "1"), (330, "0"),
           (100, "AcDbSymbolTable"), (70, 3))
    for handle, name in ((MODEL, "*Model_Space"), (PAPER, "*Paper_Space"), (CIRCUIT, "CIRCUIT")):
        w.tags((0, "BLOCK_RECORD"), (5, handle), (330, "1"), (100, "AcDbSymbolTableRecord"),
               (100, "AcDbBlockTableRecord"), (2, name))
    w.tags((0, "ENDTAB"), (0, "ENDSEC"))
    w.tags((0, "SECTION"), (2, "BLOCKS"))
    for handle, name, end in ((MODEL, "*Model_Space", "21"), (PAPER, "*Paper_Space", "22"), (CIRCUIT, "CIRCUIT", "23")):
        w.tags((0, "BLOCK"), (5, "%X" % (int(end, 16) + 0x10)), (330, handle), (100, "AcDbEntity"), (8, "0"),
               (100, "AcDbBlockBegin"), (2, name), (70, 0), (10, 0.0), (20, 0.0), (30, 0.0), (3, name), (1, ""))
        if name == "CIRCUIT":
            w.tags((0, "LINE"), (5, "30"), (330, CIRCUIT), (100, "AcDbEntity"), (8, "0"), (100, "AcDbLine"),
                   (10, 0.0), (20, 0.0), (30, 0.0), (11, 10.0), (21, 5.0), (31, 0.0))
            w.tags((0, "LWPOLYLINE"), (5, "31"), (330, CIRCUIT), (100, "AcDbEntity"), (8, "0"),
                   (100, "AcDbPolyline"), (90, 2), (70, 1), (10, -0.5), (20, 0.0), (42, 1.0), (10, 0.5), (20, 0.0),
                   (42, 1.0))
        w.tags((0, "ENDBLK"), (5, end), (330, handle), (100, "AcDbEntity"), (8, "0"), (100, "AcDbBlockEnd"))
    w.tags((0, "ENDSEC"))


def mtext(w, handle, xdict, text, x, y, xdata):
    w.tags((0, "MTEXT"), (5, handle))
    if xdict:
        w.tags((102, "{ACAD_XDICTIONARY"), (360, xdict), (102, "}"))
    w.tags((330, MODEL), (100, "AcDbEntity"), (8, "BOM"), (100, "AcDbMText"), (10, x), (20, y), (30, 0.0),
           (40, 2.5), (41, 20.0), (71, 1), (72, 5), (1, text), (7, "Standard"), (73, 1), (44, 1.0))
    for app, items in xdata:
        w.tags((1001, app), *items)


def main():
    out_path = sys.argv[1]
    units = int(sys.argv[2]) if len(sys.argv) > 2 else 60000
    with open(out_path, "w", encoding="utf-8", newline="\n") as out:
        w = Writer(out)
        seed = "%X" % (0x100 + units * 6 + 16)
        header(w, seed)
        w.tags((0, "SECTION"), (2, "ENTITIES"))
        objects = []
        previous_insert = None
        for i in range(units):
            label, kind, name, insert, xdict, xrec = (w.handle() for _ in range(6))
            y = -10.0 * i
            mtext(w, label, xdict, "QF%d" % i, 0.0, y, [
                ("QXBOM_LABEL", [(1000, "")]),
                ("QXBOM_LABEL_TYPEHANDLE", [(1005, kind)]),
                ("QXBOM_LABEL_NAMEHANDLE", [(1005, name)]),
                ("QXBOM_LABEL_NOHANDLE", [(1005, "0")]),
            ])
            mtext(w, kind, None, "{\\fSimSun|b0;NSX100F-%d}" % i, 30.0, y, [
                ("QXBOM_TYPE_LABELHANDLE", [(1005, label)]),
                ("QXBOM_CODE", [(1000, "C%06d" % i)]),
                ("QXBOM_PRICE", [(1000, "%d.50" % (i % 1000))]),
            ])
            mtext(w, name, None, "断路器%d" % i, 60.0, y, [("QXBOM_NAME_LABELHANDLE", [(1005, label)])])
            w.tags((0, "INSERT"), (5, insert), (330, MODEL), (100, "AcDbEntity"), (8, "0"),
                   (100, "AcDbBlockReference"), (2, "CIRCUIT"), (10, 200.0), (20, y), (30, 0.0))
            w.tags((1001, "QX_Circuit1_No"), (1000, "%d＠K%02d『进线』" % (i % 9, i % 97)),
                   (1001, "QX_Circuit1_Use"), (1000, "馈线"),
                   (1001, "QX_SYMB1_TYPEHANDLE"), (1005, previous_insert or insert), (1005, insert))
            previous_insert = insert
            objects.append((label, xdict, xrec, i))
        w.tags((0, "ENDSEC"))

        w.tags((0, "SECTION"), (2, "OBJECTS"), (0, "DICTIONARY"), (5, "C"), (330, "0"), (100, "AcDbDictionary"),
               (281, 1))
        for label, xdict, xrec, i in objects:
            w.tags((0, "DICTIONARY"), (5, xdict), (330, label), (100, "AcDbDictionary"), (280, 1), (281, 1),
                   (3, "QXBOM_LABEL"), (360, xrec))
            w.tags((0, "XRECORD"), (5, xrec), (102, "{ACAD_REACTORS"), (330, xdict), (102, "}"), (330, xdict),
                   (100, "AcDbXrecord"), (280, 1), (1, "标号:QF%d" % i), (1, "序号:%d" % i), (1, "板号:1"),
                   (1, "元件描述:断路器"))
        w.tags((0, "ENDSEC"), (0, "EOF"))
        w.flush()


if __name__ == "__main__":
    main()
