#!/usr/bin/env python3
"""Writes the first seeds of the harnesses added after the first layer (tests/fuzz/corpus/<harness>/seed-*)
and the open findings named in their issue (tests/fuzz/open/<harness>/). Runs merge them with what the
fuzzers find; run this again only to start a corpus afresh."""
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))


def write(folder, name, data):
    path = os.path.join(HERE, folder, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as out:
        out.write(data if isinstance(data, bytes) else data.encode("utf-8"))


def parts(*texts):
    return b"\0".join(t if isinstance(t, bytes) else t.encode("utf-8") for t in texts)


# --- mtext: MText bodies, title cell tables, record groups, circuit values and pairs -----------------------
MTEXT = {
    "formats": "{\\fSimSun|b0|i0|c134|p2;\\H2.5x;型号}\\PVS1-12/630\\P{\\C1;红}\\~\\\\",
    "stacked": "\\A1;\\S1^2;\\Ttext;\\Q15;\\W0.8;{\\L下划线\\l}\\O上\\o\\K删\\k",
    "unclosed": "{{{\\f",
    "plain": "断路器 {abc;def}",
    "title": "$BEGINETITLE\nA3\n图 号|10|25|60|5|0|0|\n图纸名称|70|25|170|5|0|0|a|b\n$ENDTITLE\n",
    "title-many": "$beginetitle\nA1\n" + "".join(f"c{i}|{i}|{i}|{i+5}|{i+5}|0|0|\n" for i in range(130)),
    "labels": "标号:K1\n序号:1\n板号:2\n板名:主板\n板前板后:前\n元件描述:d\n标号:K2\n序号:2\n空开图组件:x",
    "components": "标号:K1\n名称:断路器\n编码:0101\n型号:VS1\n数量:2\n标号:K1\n名称:继电器\n数量:x",
    "circuit": "A＠01『进线』\n型号\nVS1\n数量\n3\n名称\n断路器\n单价\n10\n编码",
    "circuit-row": "P＠柜名|||进线柜『注』",
    "root-sign": "\\U+221A3 \\U+221",
}
for name, text in MTEXT.items():
    write("corpus/mtext", f"seed-{name}", text)


# --- drawingtemplate: the strings the template asks for, in its order ------------------------------------
def template(strings, tail=b"\x01" * 16):
    # FuzzedDataProvider ends a string at a backslash followed by any other character; choices and
    # counts come from the end of the input.
    return "\\x".join(s.replace("\\", "\\\\") for s in strings).encode("utf-8") + tail


TITLE = ["1", "1", "1", "1", "1", "$BEGINETITLE\nA3\n图 号|10|25|60|5|0|0|\n图纸名称|70|25|170|5|0|0|\n$ENDTITLE"]
write("corpus/drawingtemplate", "seed-title", template(TITLE + ["QX-01", "一次系统图"]))
write("corpus/drawingtemplate", "seed-head",
      template(TITLE + ["一次额定电压: 10kV", "一次额定电压", "母线规格：TMY-80", "母线规格", "二次额定电压 220V"]))
write("corpus/drawingtemplate", "seed-circuit",
      template(TITLE + ["型号\nVS1\n数量\n2", "K1", "VS1", "0101", "断路器", "A＠01『进线』", "D:\\p\\a.dwg|b.dwg",
                        "G1", "进线", "KYN28", "10kV", "0.4kV", "TMY", "1", "柜序|||1\n额定电流|||630A"]))
write("corpus/drawingtemplate", "seed-bom",
      template(TITLE + ["K1", "VS1", "label", "type", "0101", "100", "断路器", "1", "1", "断路器", "2", "备注", "A1",
                        "标号:K1\n序号:1\n板号:2\n标号:K2", "标号:K1\n名称:n\n编码:c\n型号:t\n数量:2", "位置", "A01"]))


# --- repository: journal, Client.xml, listing, lock, login file, choices ---------------------------------
def scramble(text):
    return "".join(chr(ord("a") + (b >> 4)) + chr(ord("a") + (b & 15)) for b in text.encode("latin-1", "replace"))


LOGIN = "\r\n".join(scramble(line) for line in ["", "lib", "127.0.0.1", "21", "0", "user", "secret", "", "", "", "1"])
JOURNAL = ("版本日期：2024,05,01,10,00,00\r\nLib\\a.dwg|2024,05,01,10,00,00|MOD\r\nLib\\Sub\\|2024,04,01,10,00,00|REN\r\n"
           "Data\\QxMainLib.mdb|2024,03,01,10,00,00|MOD\r\nOld\\b.dwg|2024,02,01,10,00,00|DEL\r\n")
CLIENT = "版本日期：2024,01,01,00,00,00\r\n"
MLSD = "type=cdir; .\r\ntype=pdir; ..\r\ntype=file;size=9; a.dwg\r\ntype=dir; Sub\r\ntype=file; Server.xml\r\n"
LIST = ("drwxr-xr-x 2 u g 0 Jan 01 00:00 Sub\r\n-rw-r--r-- 1 u g 9 Jan 01 00:00 a.dwg\r\n"
        "-rw-r--r-- 1 u g 9 Jan 01 00:00 name with blanks.dwg\r\n")
write("corpus/repository", "seed-mlsd", parts(JOURNAL, CLIENT, MLSD, "10.0.0.2", LOGIN, b"\x00"))
write("corpus/repository", "seed-list", parts(JOURNAL, "", LIST, "", LOGIN, b"\x01"))
write("corpus/repository", "seed-in-step", parts(CLIENT, CLIENT, MLSD, "", "", b"\x00"))
write("corpus/repository", "seed-journal-paths",
      parts("版本日期：2024,05,01\r\n..\\..\\x.dwg|2024,06,01|MOD\r\nC:\\x|2024,06,01|MOD\r\n\\abs|2024,06,01|MOD\r\n"
            "Lib\\..\\..\\y|2024,06,01|REN\r\n", "", MLSD, "", LOGIN, b"\x00"))
# Found from outside: a listing name that climbs out of the folder being downloaded.
write("open/repository", "listing-name-escapes-install-folder",
      parts(JOURNAL, CLIENT, "type=file;size=9; ../../../escaped.txt\r\ntype=dir; ../../up\r\n", "", "", b"\x00"))
write("open/repository", "list-name-escapes-install-folder",
      parts(JOURNAL, CLIENT, "-rw-r--r-- 1 u g 9 Jan 01 00:00 ../../escaped.txt\r\n", "", "", b"\x01"))


# --- dialogline: devices, cabinet numbers of the scan, answer lines --------------------------------------
write("corpus/dialogline", "seed-ok",
      parts("1#进线\n2#出线|old|名", "A1(W1)\nA1(W2)\nB2", "1 2 A1\n2 2 B2\n2 3 出线柜\nok"))
write("corpus/dialogline", "seed-keys",
      parts("d1|A1|n\nd2", "(X)\nC3(", "#\nhelp\n?\nshow\n\n1 2\nenter\n=typed\nup\ndown\npick 1\npick 99\n1 9 x\n0 0\ncancel"))
write("corpus/dialogline", "seed-checks", parts("d1|\nd2|A.1", "", "OK\n1 2 A1\nOk\n2 2 A2\noK"))


# --- projecttree: files laid out below the project's parent folder ---------------------------------------
PRJ = ("$BEGIN NOTE OF PRJ\n$BEGIN_ONE_NOTE\n柜编号\nA1\n$END_ONE_NOTE\n$BEGIN_ONE_NOTE\n柜名称\n进线柜\n$END_ONE_NOTE\n"
       "$BEGIN_ONE_NOTE\n柜型号\n$END_ONE_NOTE\n$END NOTE OF PRJ\n$BEGIN CONTENT OF PRJ\n原图\n$END CONTENT OF PRJ\n")
ROOT_XML = ("<?xml version='1.0'?><Hexmoor><Node Name=\"P\" ID=\"P1\" Type=\"\"><SubNodes>"
            "<SubNode Name=\"S1\" ID=\"S1\" Type=\"100\"/><SubNode Name=\"K02\" ID=\"D2\" Type=\"0\"/>"
            "<SubNode Name=\"..\" ID=\"D3\" Type=\"0\"/><SubNode Name=\"Outside\" ID=\"D4\" Type=\"100\"/>"
            "</SubNodes></Node></Hexmoor>")
DEVICE_XML = ("<?xml version='1.0'?><Hexmoor><Node Name=\"K02\" ID=\"D2\" Type=\"0\" CirNo=\"1\" CirName=\"柜\" "
              "CirType=\"KYN28\" CirSize=\"800\"><Boms><cabinet ID=\"c1\"><product F_Name=\"断路器\" F_Model=\"VS1\" "
              "F_Numbers=\"2\"/></cabinet></Boms><DataSchema><NewDataSet/></DataSchema></Node></Hexmoor>")
write("corpus/projecttree", "seed-local",
      parts("P/S1/S1.itm\n", "P/S1/K01/K01.prj\n" + PRJ, "P/K02/K02.prj\n" + PRJ, "P/K02/a.dwg\n0\nSECTION\n0\nEOF\n"))
write("corpus/projecttree", "seed-cloud",
      parts("P/Hexmoor.xml\n" + ROOT_XML, "P/K02/Hexmoor.xml\n" + DEVICE_XML,
            "P/S1/Hexmoor.xml\n" + ROOT_XML.replace('Name="P" ID="P1"', 'Name="S1" ID="S1"')))


# --- httpreplies: one reply per request of the client's operations, in their order -----------------------
import json

ROW = {"label": "QF1", "name": "断路器", "model": "VS1", "count": "2", "remark": "", "code": "0101"}


def node(node_id, name, node_type, children=(), rows=()):
    return {"id": node_id, "name": name, "type": node_type, "path": "", "dataSchema": "", "changed": False,
            "cirNo": "1", "cirName": "", "cirType": "", "cirSize": "", "boms": "", "cabCount": 1,
            "primary": list(rows), "secondary": list(rows), "children": list(children)}


TREE = node("1", "工程", "", [node("2", "K01", "0", rows=[ROW])])
TREE["cabinets"] = [0]
REPORT = {"accepted": 1, "skipped": ["K02"]}
COMPARE = [{"name": "K01", "id": "2", "known": True, "revision": 3, "differences": [
    {"change": "count", "secondary": True, "name": "断路器", "model": "VS1", "centreCount": 1, "localCount": 2}]}]


def reply(body, status=200):
    return f"{status}\n" + (body if isinstance(body, str) else json.dumps(body, ensure_ascii=False))


EVERY = [reply({"token": "t"}), reply({}), reply({"name": "工程"}),
         reply([{"id": 1, "name": "工程", "created": "2024-05-01"}]), reply(TREE), reply(TREE), reply(TREE),
         reply(REPORT), reply(REPORT), reply(COMPARE), reply(REPORT), reply([ROW]), reply([ROW])]
write("corpus/httpreplies", "seed-every-operation", parts(*EVERY))
write("corpus/httpreplies", "seed-refusals",
      parts(reply({"token": "t"}), reply({"error": "no"}, 422), reply("", 401), reply("not json", 500),
            reply({"error": 5}, 403), reply("[]"), reply({}, 404)))
# Found here: a project list whose project lacks its "id" is read past its end.
write("open/httpreplies", "project-without-id",
      parts(reply({"token": "t"}), reply({}), reply({"name": "p"}), reply([{"name": "x", "created": "c"}])))
write("corpus/httpreplies", "seed-wrong-shapes",
      parts(reply({"token": "t"}), reply([]), reply({"name": 1}), reply([{"id": 1, "name": "x"}, 3]), reply({"id": 1}),
            reply([]), reply({"children": {}}), reply({"accepted": "1"}), reply({"skipped": [1]}),
            reply([{"differences": [{"change": "odd"}]}]), reply({}), reply({"rows": []}), reply([{"label": 1}])))


# --- hexmoord: raw HTTP requests, "TOKEN" standing for a logged-in session's token ---------------------
def http(method, path, body="", token=True, content_type="application/json", extra=""):
    data = body.encode("utf-8")
    head = f"{method} {path} HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n"
    if token:
        head += "Authorization: Bearer TOKEN\r\n"
    if data or method == "POST":
        head += f"Content-Type: {content_type}\r\nContent-Length: {len(data)}\r\n"
    return head.encode("utf-8") + extra.encode("utf-8") + b"\r\n" + data


TREE_BODY = json.dumps(TREE, ensure_ascii=False)
write("corpus/hexmoord", "seed-login",
      parts(http("POST", "/api/login", '{"enterprise":"acme","user":"bob","credential":"secret"}', token=False),
            http("POST", "/api/login", '{"enterprise":"acme","user":"ann","credential":"guess"}', token=False),
            http("POST", "/api/logout", "")))
write("corpus/hexmoord", "seed-reads",
      parts(http("GET", "/api/projects"), http("GET", "/api/projects/1/name"), http("GET", "/api/projects/1/tree"),
            http("GET", "/api/projects/1/rows?cabinet=2")))
write("corpus/hexmoord", "seed-more-reads",
      parts(http("GET", "/api/one-cabinet"), http("GET", "/api/parts"),
            http("GET", "/api/projects/1/devices/2/revisions"), http("GET", "/api/projects/99999999999999999999/tree")))
write("corpus/hexmoord", "seed-submits",
      parts(http("POST", "/api/submit-itm", json.dumps({"tree": TREE}, ensure_ascii=False)),
            http("POST", "/api/submit-bom", json.dumps({"tree": TREE}, ensure_ascii=False)),
            http("POST", "/api/compare", json.dumps({"tree": TREE}, ensure_ascii=False)),
            http("POST", "/api/usage", '{"item":"i","key":"k","text":"t"}')))
write("corpus/hexmoord", "seed-tree-alone",
      parts(*(http("POST", route, TREE_BODY) for route in ("/api/submit-itm", "/api/submit-bom", "/api/submit-secondary",
                                                          "/api/compare"))))
write("corpus/hexmoord", "seed-web",
      parts(http("GET", "/", token=False), http("POST", "/login", "enterprise=acme&user=ann&credential=secret", token=False,
                                                content_type="application/x-www-form-urlencoded"),
            http("GET", "/projects", token=False, extra="Cookie: hexmoor_web=TOKEN\r\n"),
            http("GET", "/projects/1/devices/2/compare?from=1&to=2", token=False, extra="Cookie: hexmoor_web=TOKEN\r\n")))
write("corpus/hexmoord", "seed-odd-requests",
      parts(b"GET /style.css HTTP/1.0\r\n\r\n", b"POST /api/login HTTP/1.1\r\nContent-Length: 99999999\r\n\r\n{",
            b"POST /api/login HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n{\"a\":\r\n0\r\n\r\n",
            b"GET /api/projects HTTP/1.1\r\nRange: bytes=0-1,2-3,4-5\r\nAuthorization: Bearer x\r\n\r\n"))


# --- hexmoord: a body of "[" as long as a run's input may be (scripts/fuzz's max_len), standing for the
# 16 MiB one that cost the server 1.2 GiB when its depth was judged after the whole document was built and
# its size after it was read. With and without a session, on the login and a submit route, sized truly or
# claiming the 16 MiB. Each must pass within the harness's 128 MB per request.
FUZZ_MAX_LEN = 524288


def open_brackets(path, token, claimed=None):
    size = FUZZ_MAX_LEN
    while True:
        request = http("POST", path, "[" * size, token=token)
        if claimed:
            request = request.replace(b"Content-Length: %d" % size, b"Content-Length: %d" % claimed)
        if len(request) <= FUZZ_MAX_LEN:
            return request
        size -= len(request) - FUZZ_MAX_LEN


for route, name in (("/api/login", "login"), ("/api/submit-bom", "submit")):
    write("findings/hexmoord", f"{name}-without-session-512k-open-brackets", open_brackets(route, token=False))
    write("findings/hexmoord", f"{name}-with-session-512k-open-brackets", open_brackets(route, token=True))
    write("findings/hexmoord", f"{name}-with-session-claims-16mib-of-open-brackets",
          open_brackets(route, token=True, claimed=16 << 20))
write("findings/hexmoord", "login-without-session-claims-16mib-of-open-brackets",
      open_brackets("/api/login", token=False, claimed=16 << 20))

# --- record groups whose every group copies one long value: a part-record drawing that ends in bad_alloc ---
LONG_VALUE = "元件描述:" + "x" * 150000
write("open/mtext", "record-groups-copy-a-long-value", LONG_VALUE + "\n" + "标号:K\n" * 30000)
try:
    import ezdxf  # python3-ezdxf (run with /usr/bin/python3)

    drawing = ezdxf.new("R2010")
    drawing.appids.new("QXBOM_LABEL")
    label = drawing.modelspace().add_mtext("K1")
    label.set_xdata("QXBOM_LABEL", [(1000, "K1")])
    label.new_extension_dict().add_xrecord("QXBOM_LABEL").reset([(1, LONG_VALUE)] + [(1, "标号:K")] * 20000)
    os.makedirs(os.path.join(HERE, "open/drawingreaders"), exist_ok=True)
    drawing.saveas(os.path.join(HERE, "open/drawingreaders", "part-records-copy-a-long-value.dxf"))
except ImportError:
    print("ezdxf is missing: the part-record drawing was not written")
