"""Registering the server, and what is told of it; command_line_test.py runs it."""

import json
import shutil
import time
import unittest
from pathlib import Path

from program import APP, COMMAND, LIBRARY, ON_WINDOWS, native_only, run, scratch


class Registration(unittest.TestCase):
    """The program without the library beside it, as when both are installed elsewhere."""

    def setUp(self):
        alone = scratch / "alone"
        alone.mkdir(exist_ok=True)
        self.command = [*COMMAND[:-1], shutil.copy(COMMAND[-1], alone)]
        for runtime in Path(LIBRARY).parent.glob("libsabcom.so.*"):
            shutil.copy(runtime, alone)

    def test_finds_the_server(self):
        library = ["--server", LIBRARY]
        self.assertEqual(1, run("classes", command=self.command)[0])
        self.assertEqual(0, run("classes", *library, command=self.command)[0])
        self.assertEqual(0, run("classes", command=self.command, SABXML_SERVER=LIBRARY)[0])
        for scope in [], ["--user"]:
            self.assertEqual(0, run("register", *library, *scope, command=self.command)[0])
            if not (scope and ON_WINDOWS):  # Wine finds no classes of a user
                self.assertEqual(0, run("show", APP, command=self.command)[0])
            for _ in range(2):  # what is not registered can be unregistered
                self.assertEqual(0, run("unregister", *library, *scope, command=self.command)[0])
            self.assertEqual(1, run("show", APP, command=self.command)[0])

    def test_status(self):
        other = shutil.copy(LIBRARY, scratch / "alone")
        self.assertEqual(1, run("register", "--status", "--server", LIBRARY)[0])
        run("register", "--server", LIBRARY)
        result, output, errors = run("register", "--status", "--json", "--server", LIBRARY)
        known = {row["class"]: row for row in json.loads(output)["classes"]}["VeAppParser"]
        self.assertEqual((0, True, "", time.strftime("%Y-")),
                         (result, known["is_this_library"], errors, known["since"][:5]))
        result, output, _ = run("register", "--status", "--server", other)
        self.assertEqual(1, result)
        self.assertRegex(output, "VeAppParser +another library .*SabXmlParser")
        run("unregister", "--server", LIBRARY)

    def test_a_missing_library_is_told_and_unregistered(self):
        (scratch / "gone").mkdir()
        gone = Path(shutil.copy(LIBRARY, scratch / "gone"))
        run("register", "--server", str(gone))
        gone.unlink()
        result, output, _ = run("register", "--status", "--json")
        known = {row["class"]: row for row in json.loads(output)["classes"]}["VeAppParser"]
        self.assertEqual((1, True, False), (result, known["is_missing"], known["is_this_library"]))
        self.assertIn("is missing. To unregister it: ", run("register", "--status")[1])
        self.assertEqual(1, run("register", "--server", known["library"])[0])
        self.assertEqual((0, known["library"] + " is no longer registered\n"),
                         run("unregister", "--server", known["library"])[:2])
        self.assertNotIn("missing", run("register", "--status")[1])

    @native_only
    def test_status_is_what_a_host_finds(self):
        option = ["--registry", str(scratch / "both.reg")]
        other = shutil.copy(LIBRARY, scratch / "alone")
        for scope, library in ([], LIBRARY), (["--user"], other):
            run("register", *scope, *option, "--server", library)
            output = run("register", "--status", "--json", *option, "--server", library)[1]
            self.assertEqual({library}, {row["library"] for row in json.loads(output)["classes"]} - {None})
            self.assertEqual(option[1], json.loads(output)["registry"])
            self.assertIn(f"the server is {library}: it is registered for the classes, in HKEY_",
                          run("classes", "--verbose", *option)[2])

    @native_only
    def test_dry_run_changes_nothing(self):
        registry = scratch / "dry.reg"
        option = ["--registry", str(registry)]
        run("register", "--dry-run", *option)
        self.assertFalse(registry.exists())
        run("register", *option)
        run("unregister", *option)  # the roots of the registry stay
        _, output, _ = run("register", "--dry-run", *option)
        self.assertIn("+ [HKEY_CLASSES_ROOT\\SabXmlParser.VeAppParser\\CurVer] "
                      '@="SabXmlParser.VeAppParser.1"\n', output)
        run("register", *option)
        before = registry.read_bytes()
        self.assertEqual("Nothing would change.\n", run("register", "--dry-run", *option)[1])
        removed = run("unregister", "--dry-run", *option)[1]
        self.assertEqual(output.replace("+ ", "- "), removed)
        self.assertEqual(before, registry.read_bytes())

    @native_only
    def test_unregisters_only_the_named_copy(self):
        option = ["--registry", str(scratch / "copies.reg")]
        copy = shutil.copy(LIBRARY, scratch / "alone")
        run("register", "--server", LIBRARY, *option)
        first = run("unregister", "--server", copy, *option)[1].splitlines()
        self.assertEqual(f"{copy} is not registered", first[0])
        self.assertIn(" stays registered", first[1])
        self.assertIn("no longer", run("unregister", "--server", LIBRARY, *option)[1])
        for command in ["register"], ["register", "--dry-run"], ["unregister"], ["register", "--status"]:
            result, _, errors = run(*command, "--registry", str(scratch))
            self.assertEqual(1, result)
            self.assertIn(f"{scratch}: cannot ", errors)

    @unittest.skipUnless(ON_WINDOWS, "Windows only")
    def test_dry_run_needs_a_file(self):
        result, _, errors = run("register", "--dry-run")
        self.assertEqual(1, result)
        self.assertIn("nothing was changed", errors)
