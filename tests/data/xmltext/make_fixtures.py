#!/usr/bin/env python3
"""Writes the fixtures of the plain-text XML tests: usage files in several encodings, and the list of
HTML 4 character references taken from Python's own table (html.entities), which the entity table is
checked against."""
import html.entities
import pathlib

HERE = pathlib.Path(__file__).resolve().parent

USAGE = """<QxCollect>
  <User Name="张三" Company="华东电气成套设备厂"/>
  <Command Name="HMBomSubmit" Count="12" Time="2024-05-06 10:20:30"/>
  <Command Name="HMXmCreate" Count="3" Time="2024-05-07 08:01:02"/>
</QxCollect>
"""


def write(name, data):
    (HERE / name).write_bytes(data)


def main():
    crlf = USAGE.replace("\n", "\r\n")
    write("usage-utf8.xml", ('<?xml version="1.0" encoding="utf-8"?>\r\n' + crlf).encode("utf-8"))
    write("usage-nodecl.xml", crlf.encode("utf-8"))
    write("usage-bom.xml", b"\xef\xbb\xbf" + ('<?xml version="1.0" encoding="UTF-8"?>\r\n' + crlf).encode("utf-8"))
    write("usage-gb2312.xml", ('<?xml version="1.0" encoding="GB2312"?>\r\n' + crlf).encode("gbk"))
    write("usage-gbk.xml", ("<?xml version='1.0' encoding='GBK' standalone='yes'?>\r\n" + crlf).encode("gbk"))
    lines = [f"{name} {code}\n" for name, code in sorted(html.entities.name2codepoint.items())]
    (HERE / "html4-entities.txt").write_text("".join(lines), encoding="ascii")


if __name__ == "__main__":
    main()
