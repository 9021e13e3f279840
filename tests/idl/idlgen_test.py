#!/usr/bin/env python3
"""The generator refuses what it does not know, at the line where it stands, and leaves files alone
that need not change.

usage: idlgen_test.py TOOLS_FOLDER
"""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOLS = Path(sys.argv.pop(1))

HEAD = """import "oaidl.idl";

[uuid(00000000-0000-0000-0000-000000000001), version(1.0), lcid(0x0804), helpstring("Lib")]
library TestLib
{
[object, uuid(00000000-0000-0000-0000-000000000002), dual, helpstring("IThing Interface")]
interface IThing : IDispatch
{
"""
TAIL = """};
[uuid(00000000-0000-0000-0000-000000000003), helpstring("Thing Class")]
coclass Thing
{
[default] interface IThing;
};
};
"""
FIRST_MEMBER_LINE = HEAD.count("\n") + 1
NAME = '[id(1), propget, helpstring("名称")] HRESULT Name([out, retval] BSTR* pVal);'


def generate(text, folder):
    source = Path(folder) / "test.idl"
    source.write_text(text, encoding="utf-8")
    return subprocess.run([sys.executable, TOOLS / "idlgen.py", source, Path(folder) / "out"],
                          capture_output=True, text=True, check=False)


class Generator(unittest.TestCase):
    def test_refuses_what_it_does_not_know(self):
        rows = [
            ('[id(1), helpstring("x")] HRESULT F([in] VARIANT a);', "unknown type: VARIANT"),
            ('[id(1), helpstring("x")] HRESULT F([in] IOther* a);', "unknown type: IOther*"),
            ('[id(1), helpstring("x")] HRESULT F([in, shared] long a);', "unknown direction"),
            ('[id(1), helpstring("x")] HRESULT F([out] long a);', "must be a pointer"),
            ('[id(1), helpstring("x")] HRESULT F([out, retval] long* a, [in] long b);',
             "retval must be the last"),
            ('[id(1)] HRESULT F();', "needs an id and a helpstring"),
            ('[id(1), source, helpstring("x")] HRESULT F();', "unknown attribute: source"),
            ('[id(1), helpstring("x")] void F();', "not a member on one line"),
            ('[id(1), propget, helpstring("x")] HRESULT F([in] long a);', "a propget takes"),
            (NAME + '\n[id(1), helpstring("x")] HRESULT F();', "id(1) stands here twice"),
            (NAME + '\n[id(2), propget, helpstring("x")] HRESULT Name([out, retval] long* v);',
             "get_Name stands here twice"),
        ]
        for member, message in rows:
            with self.subTest(member), tempfile.TemporaryDirectory() as folder:
                result = generate(HEAD + member + "\n" + TAIL, folder)
                line = FIRST_MEMBER_LINE + member.count("\n")
                self.assertEqual(1, result.returncode)
                self.assertIn(f"test.idl:{line}: ", result.stderr)
                self.assertIn(message, result.stderr)
                self.assertFalse((Path(folder) / "out").exists())

    def test_writes_every_output_and_nothing_twice(self):
        with tempfile.TemporaryDirectory() as folder:
            # The second byte of the last character is a backslash, which has to be escaped.
            help_text = "名称" + next(c for c in map(chr, range(0x4E00, 0x9FA5))
                                    if c.encode("gbk")[1:] == b"\\")
            text = HEAD + NAME.replace("名称", help_text) + "\n" + TAIL
            self.assertEqual("", generate(text, folder).stderr)
            out = Path(folder) / "out"
            self.assertIn(help_text.encode("gbk") + b"\\", (out / "SabXmlParser.gbk.idl").read_bytes())
            stamps = {p: p.stat().st_mtime_ns for p in out.rglob("*") if p.is_file()}
            self.assertEqual(8, len(stamps))
            generate(text, folder)
            self.assertEqual(stamps, {p: p.stat().st_mtime_ns for p in stamps})


if __name__ == "__main__":
    unittest.main()
