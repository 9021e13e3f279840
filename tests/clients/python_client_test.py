#!/usr/bin/env python3
"""The Python client, as a program would use it.

usage: python_client_test.py PACKAGE_FOLDER SAMPLES_FOLDER LIBRARY SABXML
"""

import ast
import copy
import ctypes
import gc
import inspect
import os
import pickle
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest
from collections.abc import Sequence
from pathlib import Path

PACKAGE, SAMPLES, LIBRARY, SABXML = (Path(path).absolute() for path in sys.argv[1:5])
del sys.argv[1:5]
sys.path.insert(0, str(PACKAGE))
os.environ["SABXML_SERVER"] = str(LIBRARY)

import sabxml  # noqa: E402  (found through the path above)
import sabxml.interfaces  # noqa: E402
from sabxml import create as new  # noqa: E402

under_sanitizer = "LD_PRELOAD" in os.environ

# class, property; what is written and what is read then, where these differ
ROUND_TRIPS = [
    ("VeAppParser", "ConfigurationPath", ["C:\\图\\𠀀.xml", "", (Path("a/b.xml"), "a/b.xml"), (None, ""),
                                          (12, "12")]),
    ("VeDisplayCfgParser", "bigcursor", [True, (0, False)]),
    ("VeDisplayCfgParser", "UCSIconStyle", [-2**31, ("77", 77)]),
    ("VeDisplayCfgParser", "ZoomFactor", [2**15 - 1]),
    ("VeDisplayCfgParser", "GlobalLnTypeScale", [0.25]),
    ("VeDisplayCfgParser", "DefLineWidthDisplayScale", [0.1]),
    ("VeTxtParser", "DefTxtHei", [(2, 2.0)]),
]


def accels(keys):
    collection = new("VePrsAccelColl")
    for key in keys:
        accel = new("VePrsAccel")
        accel.Key = key
        collection.AddTail(accel)
    return collection


def keys(items):
    return "".join(accel.Key for accel in items)


def application(path="application.xml"):
    app = new("VeAppParser")
    app.ConfigurationPath = SAMPLES / path
    app.GenerateApp()
    return app


# statements; an expression then; its value
FACTS = [
    ("p = new('VeProductCfgParser'); p.Value['Paper'] = 'A3'; p.Value['Scale'] = 2",
     "[p.ValueName(i) for i in range(p.ValueCount)], p.value['Scale']", (["Paper", "Scale"], "2")),
    ("p = new('VeFilePathCfgParser'); p.put_DCBrowseHistory('C:\\\\d'); e = sabxml.Ref('before')",
     "p.get_DCHistoryCount(), p.get_DCHistoryAt(0), p.get_DCHistoryAt(0, e), e.value",
     (1, "C:\\d", None, "C:\\d")),
    ("s = new('VeSysParameterCfgParser'); s.InsertMatchRule(I_BSVALUE='M6', i_bsKey='bolt')",
     "s.get_MatchRuleAt(i_iValueIndex=0, i_iKeyIndex=0)", ("bolt", "M6")),
    ("app = application()", "app.GetTmplatePaths(), [page.LocalName for page in app.GetConfigurations()]",
     (["templates\\part.xml", "templates\\assembly.xml"], ["常规", "Printing"])),
    ("app = new('VeAppParser')", "'GenerateApp' in dir(app), hasattr(app, 'GetColour'), bool(app)",
     (True, False, True)),
    ("u = sabxml.Collection(new('VeAppParser')._reference); u.ConfigurationPath = 'x'",  # untyped
     "bool(u), u.configurationpath(), dir(u)", (True, "x", [])),
    ("bare = sabxml.Object.__new__(sabxml.Object)", "hasattr(bare, 'Key')", False),
    ("i = sabxml.interfaces", "len(dir(i)), hasattr(i, 'INothing'), i.IVeAppParser.ConfigurationPath.__doc__",
     (86, False, "配置文件路径")),
    ("c = accels('A'); t = sabxml.interfaces.IVePrsAccelColl",
     "isinstance(c, t), t.GetAt.__doc__, str(inspect.signature(c.AddTail)), keys([t.GetHead(c)])",
     (True, "method GetAt", "(i_pItem, o_lpPosition=None)", "A")),
    ("c = accels('')", "list(c), len(c), bool(c), c[-2:]", ([], 0, False, [])),
    ("c = accels('ABCD')", "keys(c), keys(reversed(c)), len(c), c[0].Key, c[-1].Key, keys(c[-2:])",
     ("ABCD", "DCBA", 4, "A", "D", "CD")),
    ("c = accels('ABCDE'); del c[1:3], c[-1]; c[0] = new('VePrsAccel'); c[0].Key = 'Z'", "keys(c)", "ZD"),
    ("c = accels('ABC'); at = sabxml.Ref(c.GetHeadPosition())",
     "c.GetNext(at).Key + c.GetNext(at).Key + c.GetPrev(at).Key, keys([c.GetAt(at.value)])", ("ABC", "B")),
    ("c = accels('A'); at = sabxml.Ref(); c.AddTail(o_lpPosition=at, i_pItem=c[0]); c.RemoveAt(at.value)",
     "type(at.value), len(c)", (int, 1)),
    # Only an enumerator can go on; positions would be gone.
    ("c = accels('AB'); seen = [(c.RemoveAll(), accel.Key)[1] for accel in c]", "seen", ["A", "B"]),
    ("c = accels('AB'); a, b = c", "a == c.GetHead(), a == b, a == 'A', b in c, len({a, c[0]})",
     (True, False, False, True, 1)),
    ("c = accels('AB'); u = sabxml.Collection(c._reference)",
     "isinstance(c, Sequence), c.index(c[1]), c.index(c[1], 1, 2), c.count(c[0]), c.count(), c.COUNT(), u.count()",
     (True, 1, 1, 1, 2, 2, 2)),
    ("t = sabxml.interfaces.IVeAppParser", "t.__doc__", "IVeAppParser Interface"),
]

# what fails; its code; what it says; where it comes from
FAILURES = [
    (lambda: application("missing.xml"), 0x84000C06, "missing.xml", "SabXmlParser.VeAppParser"),
    (lambda: new("VeProductCfgParser").Value["Scale"], 0x80070057, '"Scale"',
     "SabXmlParser.VeProductCfgParser"),
    (lambda: new("VeAppParser").Colour, 0x80020006, "Colour", ""),
    (lambda: new("VeAppParser").__iter__x, 0x80020006, "__iter__x", ""),
    (lambda: setattr(new("VeProductCfgParser"), "ValueCount", 3), 0x80020003, "ValueCount", ""),
    (lambda: new("VeAppParser").GenerateApp(1), 0x8002000E, "take 1 arg", ""),
    (lambda: new("VeProductCfgParser").Value(), 0x8002000E, "take 0 arg", ""),
    (lambda: accels("A").Item(1), 0x800A0009, "the collection has 1 element",
     "SabXmlParser.VePrsAccelColl"),
    (lambda: accels("A").GetAt("here"), 0x80020005, "argument 1 of GetAt", ""),
    (lambda: accels("A").AddTail(new("VeAppParser")), 0x80020005, "argument 1", ""),
    (lambda: setattr(new("VeDisplayCfgParser"), "ZoomFactor", 2**15), 0x8002000A, "ZoomFactor", ""),
    (lambda: new("VeNothing"), 0x800401F3, "no class named VeNothing", ""),
    (lambda: new("{junk}"), 0x800401F3, "{junk} is no class identifier", ""),
    (lambda: new("{A72B61B7-870B-4BE9-BFC1-CA07CBEA8EDC}"), 0x80040111, "no class", ""),
    (lambda: new("VeAppParser", SAMPLES / "application.xml"), 0x800401F8, "SABXML_SERVER", ""),
    (lambda: new("VeAppParser", LIBRARY.with_name("libsabcom.so")), 0x800401F8, "DllGetClassObject", ""),
    (lambda: setattr(new("VeAppParser"), "ConfigurationPath", object()), TypeError, "type object", None),
    (lambda: setattr(new("VeAppParser"), "ConfigurationPath", [1]), TypeError, "type list", None),
    (lambda: setattr(new("VeAppParser"), "ConfigurationPath", 2**64), OverflowError, "64 bits", None),
    (lambda: new(None), TypeError, "NoneType", None),
    (lambda: copy.copy(new("VeAppParser")), TypeError, "neither copied nor pickled", None),
    (lambda: pickle.dumps(new("VeAppParser")), TypeError, "neither copied nor pickled", None),
    (lambda: copy.deepcopy([accels("").GetAt]), TypeError, "neither copied nor pickled", None),
    (lambda: iter(new("VeAppParser")), TypeError, "not iterable", None),
    (lambda: accels("A")["A"], TypeError, "indices of a collection are integers or slices", None),
    (lambda: accels("A").__setitem__(slice(1), []), TypeError, "a slice of a collection", None),
    (lambda: accels("A").index("A"), ValueError, "'A' is not in the collection", None),
    (lambda: accels("A")[1], IndexError, "no element 1 among 1", None),
    (lambda: accels("A")[-2], IndexError, "no element -2 among 1", None),
    (lambda: accels("").AddTail(item=None), TypeError, "item; it has i_pItem, o_lpPosition", None),
    (lambda: accels("").AddTail(o_lpPosition=None), TypeError, "lacks the argument i_pItem", None),
    (lambda: accels("").AddTail(None, i_pitem=None), TypeError, "is given i_pitem twice", None),
]


class Members(unittest.TestCase):
    def test_properties(self):
        for name, member, pair in ((*row[:2], pair) for row in ROUND_TRIPS for pair in row[2]):
            written, expected = pair if isinstance(pair, tuple) else (pair, pair)
            with self.subTest(f"{name}.{member} = {written!r}"):
                item = new(name)
                setattr(item, member, written)
                value = getattr(item, member.upper())
                self.assertEqual((expected, type(expected)), (value, type(value)))

    def test_facts(self):
        for statements, expression, expected in FACTS:
            with self.subTest(statements):
                scope = dict(globals())
                exec(statements, scope)
                self.assertEqual(expected, eval(expression, scope))

    def test_failures(self):
        for call, kind, text, source in FAILURES:
            is_member = kind in (0x80020003, 0x80020006)
            expected = kind if source is None else AttributeError if is_member else sabxml.Error
            with self.subTest(text):
                with self.assertRaises(expected) as caught:
                    call()
                error = caught.exception
                self.assertIn(text, str(error))
                if source is not None:
                    self.assertEqual((is_member, kind, kind, source), (
                        isinstance(error, sabxml.MemberError), error.code, error.args[0], error.source))
                    self.assertIn(f"0x{kind:08X}", str(error))
                    # An error is gone after it was told.
                    self.assertEqual("missing" in text, "missing" in error.description)


class Stubs(unittest.TestCase):
    USES = """
import sabxml
from collections.abc import Sequence
from pathlib import Path
from sabxml.interfaces import IVeAppParser, IVePrsAccel
def use(app: IVeAppParser) -> list[str]:
    app.ConfigurationPath = Path("x")
    return app.GetTmplatePaths()
accels = sabxml.create("VePrsAccelColl")
accels.AddTail(i_pItem=accels[0], o_lpPosition=sabxml.Ref())
first: list[IVePrsAccel] = accels[:1]
keys: list[str] = [accel.Key for accel in accels]
place: int = list(accels[1:]).count(first[0]) + accels.index(first[0])
items: Sequence[IVePrsAccel] = accels
product = sabxml.create("SabXmlParser.VeProductCfgParser")
product.Value["Paper"] = product.ValueName(0) + product.Value["A"]
pair: tuple[str, str] = sabxml.create("VeSysParameterCfgParser").get_MatchRuleAt(0, 0)
with sabxml.settings("VeDisplayCfgParser", "x", "/y") as display:
    display.CursorSize = 9
    display.CursorSize = "9"  # wrong
    display.CursorSiez  # wrong
accels.AddTail(sabxml.create("VePrsRibbonTab"))  # wrong
accels.AddTail(item=None)  # wrong
product.ValueCount = 3  # wrong
sabxml.settings("VeDisplayCfgParser", use, "/y")  # wrong
"""

    def test_members_are_those_of_the_objects(self):
        members, tree = {}, ast.parse((PACKAGE / "sabxml/interfaces.pyi").read_text(encoding="utf-8"))
        for interface in (node for node in tree.body if isinstance(node, ast.ClassDef)):
            own = {getattr(node, "name", None) or node.target.id for node in interface.body
                   if isinstance(node, (ast.FunctionDef, ast.AnnAssign))}
            members[interface.name] = own | members.get(getattr(interface.bases[0], "id", ""), set())
        self.assertEqual({name: {member.name for member in getattr(sabxml.interfaces, name)._members.values()}
                          for name in dir(sabxml.interfaces)}, members)

    @unittest.skipIf(under_sanitizer or not shutil.which("mypy"), "mypy is missing, or a sanitizer is there")
    def test_mypy(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        Path(folder, "use.py").write_text(self.USES)
        result = subprocess.run(
            ["mypy", "--strict", "--cache-dir", folder, "use.py", *(PACKAGE / "sabxml").glob("*.pyi")],
            cwd=folder, env={**os.environ, "MYPYPATH": str(PACKAGE)}, capture_output=True, text=True)
        wrong = [i for i, line in enumerate(self.USES.split("\n"), 1) if line.endswith("# wrong")]
        self.assertEqual([("use.py", str(line)) for line in wrong],
                         re.findall(r"^(\S+?):(\d+): error", result.stdout, re.M), result)


class Lifetime(unittest.TestCase):
    def assert_nothing_is_left(self):
        gc.collect()
        new("VePrsAccel")  # releases what other threads have left over
        gc.collect()
        self.assertEqual(0, ctypes.CDLL(str(LIBRARY)).DllCanUnloadNow())

    def test_nothing_is_left(self):
        collection = accels("AB")
        self.assertEqual(1, ctypes.CDLL(str(LIBRARY)).DllCanUnloadNow())
        walk = iter(collection)
        next(walk)
        cycle = [collection, collection.GetAt]
        cycle.append(cycle)
        del collection, walk, cycle
        self.assert_nothing_is_left()

    def test_threads(self):
        kept, failures = [new("VePrsAccel")], []

        def use_and_drop():
            try:
                kept[0].Key
            except sabxml.Error as error:
                failures.append((error.code, repr(kept[0])[:16], keys(accels("X"))))
            kept.clear()

        # The system may give the last one the number of the one that has ended.
        for work in use_and_drop, lambda: kept.append(new("VePrsAccel")), use_and_drop:
            thread = threading.Thread(target=work)
            thread.start()
            thread.join()
            if not kept and len(failures) == 1:
                self.assert_nothing_is_left()
        self.assertEqual([(0x8001010E, "<sabxml IVePrsAc", "X")] * 2, failures)

    def test_memory_is_returned(self):
        product, paths, text = new("VeProductCfgParser"), new("VeFilePathCfgParser"), "x" * 500_000
        product.Value["Large"] = text  # a megabyte as UTF-16
        paths.put_DCBrowseHistory(text)
        before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
        for _ in range(100):
            product.Value["Large"] = product.Value["Large"]
            paths.get_DCHistoryAt(0, sabxml.Ref(text))
            for refused in product.Value, product.RemoveValue:
                with self.assertRaises(sabxml.Error):
                    refused(text, text)
        if not under_sanitizer:  # it keeps freed memory for a while
            self.assertLess(resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before, 50_000)


class Finding(unittest.TestCase):
    """Where the client finds the server, each in a process of its own."""

    SCRIPT = ("import sabxml; app = sabxml.create('VeAppParser'); "
              "accels = sabxml.create('SabXmlParser.VePrsAccelColl.1'); print(len(accels), app)")

    def test_places(self):
        folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        beside = folder / "beside"
        shutil.copytree(PACKAGE / "sabxml", beside / "sabxml")
        for library in (LIBRARY, LIBRARY.with_name("libsabcom.so.0")):
            shutil.copy(library, beside / "sabxml")
        registered = str(folder / "registered.reg")
        # The program brings the runtime of its sanitizer itself.
        own = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}
        subprocess.run([SABXML, "--registry", registered, "register"], check=True,
                       stdout=subprocess.DEVNULL, env=own)
        for name, package, variables, expected in [
            ("a variable names it", PACKAGE, {"SABXML_SERVER": str(LIBRARY)}, "0 <sabxml IVe"),
            ("registered", PACKAGE, {"SABCOM_REGISTRY": registered,
                                     "LD_LIBRARY_PATH": str(LIBRARY.parent)}, "0 <sabxml IVe"),
            ("beside the package", beside, {}, "0 <sabxml IVe"),
            ("nowhere", PACKAGE, {}, "SABXML_SERVER"),
        ]:
            with self.subTest(name):
                result = subprocess.run(
                    [sys.executable, "-c", self.SCRIPT], cwd=folder, capture_output=True, text=True,
                    env={**os.environ, "PYTHONPATH": str(package), "SABXML_SERVER": "",
                         "SABCOM_REGISTRY": str(folder / "none.reg"), **variables})
                self.assertIn(expected, result.stdout + result.stderr)
                # The end of the interpreter is silent.
                self.assertEqual(expected == "SABXML_SERVER", bool(result.returncode or result.stderr))


if __name__ == "__main__":
    unittest.main()
