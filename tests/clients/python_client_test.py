#!/usr/bin/env python3
"""The Python client, as a program would use it.

usage: python_client_test.py PACKAGE_FOLDER SAMPLES_FOLDER LIBRARY SABXML
"""

import copy
import ctypes
import gc
import os
import pickle
import resource
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest
from pathlib import Path

PACKAGE, SAMPLES, LIBRARY, SABXML = (Path(path).absolute() for path in sys.argv[1:5])
del sys.argv[1:5]
sys.path.insert(0, str(PACKAGE))
os.environ["SABXML_SERVER"] = str(LIBRARY)

import sabxml  # noqa: E402  (found through the path above)

APP = str(SAMPLES / "application.xml")

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


def new(name):
    return sabxml.create(name)


def accelerators(*keys):
    collection = new("VePrsAccelColl")
    for key in keys:
        accel = new("VePrsAccel")
        accel.Key = key
        collection.AddTail(accel)
    return collection


def run_in_thread(function):
    thread = threading.Thread(target=function)
    thread.start()
    thread.join()


def broken_application():
    app = new("VeAppParser")
    app.ConfigurationPath = APP + ".missing"
    app.GenerateApp()


# what fails; its code; what it says; where it comes from
FAILURES = [
    (broken_application, 0x84000C06, "application.xml.missing", "SabXmlParser.VeAppParser"),
    (lambda: new("VeProductCfgParser").Value["Scale"], 0x80070057, '"Scale"',
     "SabXmlParser.VeProductCfgParser"),
    (lambda: new("VeAppParser").Colour, 0x80020006, "Colour", ""),
    (lambda: new("VeAppParser").__iter__x, 0x80020006, "__iter__x", ""),
    (lambda: setattr(new("VeProductCfgParser"), "ValueCount", 3), 0x80020003, "ValueCount", ""),
    (lambda: new("VeAppParser").GenerateApp(1), 0x8002000E, "take 1 arg", ""),
    (lambda: new("VeProductCfgParser").Value(), 0x8002000E, "take 0 arg", ""),
    (lambda: accelerators("A").Item(1), 0x800A0009, "the collection has 1 element",
     "SabXmlParser.VePrsAccelColl"),
    (lambda: accelerators("A").GetAt("here"), 0x80020005, "argument 1 of GetAt", ""),
    (lambda: accelerators("A").AddTail(new("VeAppParser")), 0x80020005, "argument 1", ""),
    (lambda: setattr(new("VeDisplayCfgParser"), "ZoomFactor", 2**15), 0x8002000A, "ZoomFactor", ""),
    (lambda: new("VeNothing"), 0x800401F3, "no class named VeNothing", ""),
    (lambda: new("{junk}"), 0x800401F3, "{junk} is no class identifier", ""),
    (lambda: new("{A72B61B7-870B-4BE9-BFC1-CA07CBEA8EDC}"), 0x80040111, "no class", ""),
    (lambda: sabxml.create("VeAppParser", APP), 0x800401F8, "SABXML_SERVER", ""),
    (lambda: sabxml.create("VeAppParser", LIBRARY.with_name("libsabcom.so")), 0x800401F8,
     "DllGetClassObject", ""),
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

    def test_failures(self):
        for call, code, text, source in FAILURES:
            is_member = code in (0x80020003, 0x80020006)
            with self.subTest(text):
                with self.assertRaises(AttributeError if is_member else sabxml.Error) as caught:
                    call()
                self.assertEqual(is_member, isinstance(caught.exception, sabxml.MemberError))
                self.assertEqual((code, code), (caught.exception.code, caught.exception.args[0]))
                self.assertIn(text, caught.exception.description)
                # An error is gone after it was told.
                self.assertEqual("missing" in text, "missing" in str(caught.exception))
                self.assertEqual(source, caught.exception.source)
                self.assertIn(f"0x{code:08X}", str(caught.exception))

    def test_what_python_cannot_hand_over(self):
        app = new("VeAppParser")
        for value, kind in [(object(), TypeError), ([1], TypeError), (2**64, OverflowError)]:
            with self.subTest(repr(value)), self.assertRaises(kind):
                app.ConfigurationPath = value
        accels = accelerators("A")
        for use in (lambda: sabxml.create(None), lambda: copy.copy(app), lambda: pickle.dumps(app),
                    lambda: copy.deepcopy([accels.GetAt]),
                    lambda: copy.deepcopy(accels._enumerator()), lambda: accels["A"],
                    lambda: iter(app), lambda: len(app), lambda: app[0]):
            with self.assertRaises(TypeError):
                use()
        self.assertTrue(app)
        self.assertFalse(hasattr(sabxml.Object.__new__(sabxml.Object), "Key"))

    def test_parameters_and_places_that_a_method_writes(self):
        product = new("VeProductCfgParser")
        product.Value["Paper"] = "A3"
        product.Value["Scale"] = 2
        names = [product.ValueName(i) for i in range(product.ValueCount)]
        self.assertEqual(["Paper", "Scale"], names)
        self.assertEqual("2", product.value["Scale"])
        paths = new("VeFilePathCfgParser")
        paths.put_DCBrowseHistory("C:\\drawings")
        self.assertEqual(1, paths.get_DCHistoryCount())
        self.assertEqual("C:\\drawings", paths.get_DCHistoryAt(0))
        entry = sabxml.Ref("before")
        self.assertIsNone(paths.get_DCHistoryAt(0, entry))
        self.assertEqual("C:\\drawings", entry.value)
        system = new("VeSysParameterCfgParser")
        system.InsertMatchRule("bolt", "M6")
        self.assertEqual(("bolt", "M6"), system.get_MatchRuleAt(0, 0))

    def test_arrays_and_objects(self):
        app = new("VeAppParser")
        app.ConfigurationPath = APP
        app.GenerateApp()
        self.assertEqual(["templates\\part.xml", "templates\\assembly.xml"], app.GetTmplatePaths())
        self.assertEqual(["常规", "Printing"], [page.LocalName for page in app.GetConfigurations()])
        self.assertIn("GenerateApp", dir(app))
        self.assertFalse(hasattr(app, "GetColour"))


class Collections(unittest.TestCase):
    def test_as_a_sequence(self):
        for keys in [(), ("A",), ("A", "B", "C", "D")]:
            with self.subTest(keys):
                collection = accelerators(*keys)
                self.assertEqual(list(keys), [accel.Key for accel in collection])
                self.assertEqual((len(keys), bool(keys)), (len(collection), bool(collection)))
                for index in range(-len(keys), len(keys)):
                    self.assertEqual(keys[index], collection[index].Key)
                self.assertEqual(list(keys[-2:]), [accel.Key for accel in collection[-2:]])
                for index in (len(keys), -len(keys) - 1):
                    with self.assertRaises(IndexError):
                        collection[index]

    def test_positions(self):
        collection = accelerators("A", "B", "C")
        position = sabxml.Ref(collection.GetHeadPosition())
        self.assertEqual("A", collection.GetNext(position).Key)
        second = position.value
        self.assertIsInstance(second, int)
        self.assertEqual("B", collection.GetNext(position).Key)
        self.assertEqual("C", collection.GetPrev(position).Key)
        self.assertEqual(second, position.value)
        position = sabxml.Ref()
        collection.AddTail(new("VePrsAccel"), position)
        collection.RemoveAt(position.value)
        with self.assertRaises(sabxml.Error):
            collection.GetAt(position.value)
        collection.RemoveAt(second)
        self.assertEqual(["A", "C"], [accel.Key for accel in collection])

    def test_a_walk_goes_on_whatever_becomes_of_the_collection(self):
        collection, keys = accelerators("A", "B"), []
        for accel in collection:  # only an enumerator can do that; positions would be gone
            collection.RemoveAll()
            keys.append(accel.Key)
        self.assertEqual(["A", "B"], keys)

    def test_identity(self):
        collection = accelerators("A", "B")
        first, second = collection
        self.assertEqual(first, collection.GetHead())
        self.assertNotEqual(first, second)
        self.assertNotEqual(first, "A")
        self.assertIn(second, collection)
        self.assertEqual(1, len({first, collection[0]}))


class Lifetime(unittest.TestCase):
    def assert_nothing_is_left(self):
        gc.collect()
        new("VePrsAccel")  # releases what other threads have left over
        gc.collect()
        self.assertEqual(0, ctypes.CDLL(str(LIBRARY)).DllCanUnloadNow())

    def test_nothing_is_left(self):
        collection = accelerators("A", "B")
        self.assertEqual(1, ctypes.CDLL(str(LIBRARY)).DllCanUnloadNow())
        walk = iter(collection)
        next(walk)
        member = collection.GetAt
        cycle = [collection]
        cycle.append(cycle)
        del collection, walk, member, cycle
        self.assert_nothing_is_left()

    def test_threads(self):
        kept = [new("VePrsAccel")]
        failures = []

        def use_and_drop():
            try:
                kept[0].Key
            except sabxml.Error as error:
                failures.append((error.code, repr(kept[0])[:16]))
            kept.clear()
            self.assertEqual(["X"], [accel.Key for accel in accelerators("X")])

        def make():
            kept.append(new("VePrsAccel"))

        run_in_thread(use_and_drop)
        self.assert_nothing_is_left()
        run_in_thread(make)
        run_in_thread(use_and_drop)  # the system may give it the number of the one that has ended
        self.assertEqual([(0x8001010E, "<sabxml IVePrsAc")] * 2, failures)

    def test_memory_is_returned(self):
        product = new("VeProductCfgParser")
        text = "x" * 500_000  # a megabyte as UTF-16
        product.Value["Large"] = text
        paths = new("VeFilePathCfgParser")
        paths.put_DCBrowseHistory(text)
        before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
        for _ in range(100):
            product.Value["Large"]
            product.Value["Large"] = text
            paths.get_DCHistoryAt(0, sabxml.Ref(text))
            with self.assertRaises(sabxml.Error):
                product.Value[text]
            with self.assertRaises(sabxml.Error):
                product.RemoveValue(text, text)
        grown = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before
        if "LD_PRELOAD" not in os.environ:  # a sanitizer keeps freed memory for a while
            self.assertLess(grown, 50_000)


class Finding(unittest.TestCase):
    """Where the client finds the server, each in a process of its own."""

    SCRIPT = ("import sabxml; app = sabxml.create('VeAppParser'); "
              "accels = sabxml.create('SabXmlParser.VePrsAccelColl.1'); print(len(accels), app)")

    def test_places(self):
        folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        beside = folder / "beside"
        shutil.copytree(PACKAGE, beside, ignore=shutil.ignore_patterns("__pycache__"))
        for library in (LIBRARY, LIBRARY.with_name("libsabcom.so.0")):
            shutil.copy(library, beside / "sabxml")
        registered = str(folder / "registered.reg")
        subprocess.run([SABXML, "--registry", registered, "register"], check=True,
                       stdout=subprocess.DEVNULL)
        for name, package, variables, expected in [
            ("a variable names it", PACKAGE, {"SABXML_SERVER": str(LIBRARY)}, "0 <sabxml IVe"),
            ("registered", PACKAGE, {"SABXML_SERVER": "", "SABCOM_REGISTRY": registered,
                                     "LD_LIBRARY_PATH": str(LIBRARY.parent)}, "0 <sabxml IVe"),
            ("beside the package", beside, {"SABXML_SERVER": ""}, "0 <sabxml IVe"),
            ("nowhere", PACKAGE, {"SABXML_SERVER": ""}, "SABXML_SERVER"),
        ]:
            with self.subTest(name):
                result = subprocess.run(
                    [sys.executable, "-c", self.SCRIPT], cwd=folder, capture_output=True, text=True,
                    env={**os.environ, "PYTHONPATH": str(package),
                         "SABCOM_REGISTRY": str(folder / "none.reg"), **variables})
                self.assertIn(expected, result.stdout + result.stderr)
                self.assertEqual(expected == "SABXML_SERVER", result.returncode != 0)
                if result.returncode == 0:
                    self.assertEqual("", result.stderr)  # the end of the interpreter is silent


if __name__ == "__main__":
    unittest.main()
