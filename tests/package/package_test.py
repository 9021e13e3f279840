#!/usr/bin/env python3
"""Packs the build, unpacks it where nobody told it of, and builds and runs a client of it.

usage: package_test.py BUILD_FOLDER CLIENT_SOURCE_FOLDER [TOOLCHAIN_FILE COMMAND...]

The client is samples/clients/cpp. COMMAND runs Windows programs.
"""

import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, CLIENT, *ON_WINDOWS = sys.argv[1:]
COMMAND = ON_WINDOWS[1:]

windows_only = unittest.skipUnless(ON_WINDOWS, "Windows only")
native_only = unittest.skipIf(ON_WINDOWS, "POSIX only")


def run(*command, **options):
    """Runs a command; its output, both streams together."""
    result = subprocess.run([*map(str, command)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            text=True, encoding="utf-8", check=False, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command} gives {result.returncode}:\n{result.stdout}")
    return result.stdout.replace("\r", "")


def name_of(file):
    """A file's name as programs of the platform know it."""
    return "z:" + str(file).replace("/", "\\") if ON_WINDOWS else file


def expected_output(source):
    return "".join(line + "\n" for line in re.findall(r"^// expect: (.*)$",
                                                      source.read_text(encoding="utf-8"), re.M))


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        run("cpack", "-B", cls.folder / "packages", cwd=BUILD)
        cls.packages = sorted(path for path in (cls.folder / "packages").iterdir()
                              if path.suffix in (".deb", ".zip"))
        away = cls.folder / "away from home"
        if ON_WINDOWS:
            archive, = cls.packages
            shutil.unpack_archive(archive, away)
            cls.root, = away.iterdir()
            cls.prefix = cls.root / ("x86" if "i686" in ON_WINDOWS[0] else "x64")
        else:
            for package in cls.packages:
                run("dpkg-deb", "-x", package, away)
            cls.prefix = away / "usr"
        cls.samples = cls.prefix / "share/sabxmlparser/samples"
        cls.environment = {**os.environ, "SABCOM_REGISTRY": str(cls.folder / "registry.reg")}
        cls.environment.pop("SABXML_SERVER", None)

    def register(self, name, *scope):
        if ON_WINDOWS:
            return run(*COMMAND, "cmd", "/c", name_of(self.root / f"{name}.cmd"), *scope)
        return run(self.prefix / "bin/sabxml", name, *scope, env=self.environment)

    def run_client(self, program, *files):
        output = run(*COMMAND, program, name_of(self.samples / "workshop"), *files,
                     env=self.environment)
        self.assertEqual(expected_output(self.samples / f"clients/cpp/{program.stem}.cpp"), output)

    def run_registered_client(self, program):
        for scope in (), ("user" if ON_WINDOWS else "--user",):
            settings = shutil.copy(self.samples / "workshop/settings.xml", self.folder)
            self.register("register", *scope)
            try:
                if not (scope and ON_WINDOWS):  # Wine finds no classes of a user
                    self.run_client(program, name_of(settings))
            finally:
                self.register("unregister", *scope)

    def test_client_of_the_cmake_package(self):
        build = self.folder / "client"
        configure = ["cmake", "-S", self.samples / "clients/cpp", "-B", build, "-G", "Ninja",
                     f"-DCMAKE_PREFIX_PATH={self.prefix}"]
        if ON_WINDOWS:
            # Toolchains look for packages below their own root, except where they are told of.
            configure += [f"-DCMAKE_TOOLCHAIN_FILE={ON_WINDOWS[0]}",
                          f"-DSabXmlParser_DIR={self.prefix}/lib/cmake/SabXmlParser",
                          "-DCMAKE_EXE_LINKER_FLAGS=-static"]
        run(*configure)
        run("cmake", "--build", build)
        suffix = ".exe" if ON_WINDOWS else ""
        self.run_registered_client(build / f"workshop{suffix}")
        if ON_WINDOWS:
            shutil.copy(self.prefix / "bin/SabXmlParser.dll", build)
        self.run_client(build / f"unregistered{suffix}")

    @native_only
    def test_client_of_pkg_config(self):
        if not shutil.which("pkg-config"):
            self.skipTest("pkg-config is not installed")
        folder, = (path.parent for path in self.prefix.rglob("sabxmlparser.pc"))
        flags = run("pkg-config", "--cflags", "--libs", "sabxmlparser",
                    env={**os.environ, "PKG_CONFIG_PATH": str(folder)})
        program = self.folder / "workshop"
        run("sh", "-c", f'c++ -std=c++17 "$1" -o "$2" {flags}', "sh",
            self.samples / "clients/cpp/workshop.cpp", program)
        self.environment["LD_LIBRARY_PATH"] = str(folder.parent)
        self.run_registered_client(program)
        del self.environment["LD_LIBRARY_PATH"]

    def test_nothing_refers_to_where_it_was_made(self):
        places = [os.fsencode(place) for place in
                  (Path(BUILD).absolute(), Path(CLIENT).absolute().parents[2],
                   self.folder / "packages")]
        for path in self.prefix.rglob("*"):
            content = path.read_bytes() if path.is_file() else b""
            for place in places:
                self.assertNotIn(place, content, path)

    @native_only
    def test_libraries_are_bound_when_they_are_loaded_and_fortified(self):
        for path in self.prefix.rglob("lib*.so*"):
            self.assertRegex(run("readelf", "-dW", path), r"Flags:.* NOW", path)
            self.assertRegex(run("readelf", "-W", "--dyn-syms", path), r"_chk@GLIBC", path)

    @native_only
    def test_the_python_client_is_there(self):
        package, = (path.parent.parent for path in self.prefix.rglob("sabxml/interfaces.pyi"))
        library, = self.prefix.rglob("libSabXmlParser.so")
        wheel, = self.prefix.rglob("sabxml-*.whl")
        pip = [sys.executable, "-m", "pip", "install", "-q", "--no-index", "--target"]
        installed, checkout = self.folder / "installed", self.folder / "checkout"
        run(*pip, installed, wheel)
        run(*pip, checkout, Path(CLIENT).parents[2] / "clients/python")
        files = [{path.name for path in place.glob("sabxml/*.py*")} for place in (package, checkout)]
        self.assertEqual(*files)
        source = (self.samples / "clients/workshop.py").read_text(encoding="utf-8")
        for place in package, installed:
            output = run(sys.executable, self.samples / "clients/workshop.py",
                         env={**self.environment, "PYTHONPATH": str(place),
                              "SABXML_SERVER": str(library)})
            self.assertEqual(re.findall(r"^expect: (.*)$", source, re.M), output.splitlines())

    @native_only
    def test_what_the_packages_say(self):
        for name, says in [("sabxmlparser_", ["Depends: libc6", "Suggests: python3"]),
                           ("sabxmlparser-dev_", ["Depends: sabxmlparser (= "])]:
            package, = (self.folder / "packages").glob(name + "*.deb")
            control = run("dpkg-deb", "-f", package)
            for text in says:
                self.assertIn(text, control)
            digest, _ = Path(f"{package}.sha256").read_text().split()
            self.assertEqual(hashlib.sha256(package.read_bytes()).hexdigest(), digest)

    @native_only
    @unittest.skipUnless(shutil.which("lintian"), "lintian is not installed")
    def test_lintian_finds_no_error(self):
        run("lintian", "--allow-root", "--fail-on", "error", *self.packages)

    def test_the_same_files_give_the_same_bytes(self):
        again = self.folder / "again"
        run("cpack", "-B", again, cwd=BUILD, env={**os.environ, "TZ": "Asia/Shanghai"})
        for package in self.packages:
            self.assertEqual(package.read_bytes(), (again / package.name).read_bytes(), package.name)

    def test_bill_of_materials(self):
        file, = self.prefix.rglob("sbom.spdx.json")
        bill = json.loads(file.read_text(encoding="utf-8"))
        self.assertEqual(("SPDX-2.3", "CC0-1.0"), (bill["spdxVersion"], bill["dataLicense"]))
        packages = {package["SPDXID"]: package["name"] for package in bill["packages"]}
        self.assertTrue(all(package["versionInfo"] for package in bill["packages"]), bill["packages"])
        links = {}
        for relation in bill["relationships"]:
            if relation["relationshipType"].endswith("_LINK"):
                links.setdefault(relation["spdxElementId"], set()).add(
                    packages[relation["relatedSpdxElement"]])
        files = {}
        for entry in bill["files"]:
            content = (self.prefix / entry["fileName"]).read_bytes()
            self.assertIn({"algorithm": "SHA256", "checksumValue": hashlib.sha256(content).hexdigest()},
                          entry["checksums"])
            files[Path(entry["fileName"]).name.partition(".")[0]] = links[entry["SPDXID"]]
        self.assertLessEqual({"CLI11", "nlohmann-json", "pugixml"}, files["sabxml"])
        self.assertIn("pugixml", files["SabXmlParser" if ON_WINDOWS else "libSabXmlParser"])
        self.assertNotIn("CLI11", files["SabXmlParser" if ON_WINDOWS else "libSabXmlParser"])
        for path in self.prefix.rglob("lib*.so*"):
            if "c++" in run("readelf", "-dW", path):
                self.assertIn("libstdc++", files[path.name.partition(".so")[0]])

    @windows_only
    def test_checksums_of_what_windows_clients_need(self):
        output = run("sha256sum", "-c", "SHA256SUMS", cwd=self.root)
        checked = {line.rpartition(": ")[0] for line in output.splitlines()}
        files = {path.relative_to(self.root).as_posix() for path in self.root.rglob("*")
                 if path.is_file()}
        self.assertEqual(files - {"SHA256SUMS"}, checked)
        width = self.prefix.name
        self.assertLessEqual({"README.txt", "register.cmd", "unregister.cmd"} | {
            f"{width}/{name}" for name in (
                "bin/SabXmlParser.tlb", "bin/SabXmlParser.manifest", "bin/sabxml.exe", "sbom.spdx.json",
                "lib/libSabXmlParser.dll.a", "share/sabxmlparser/idl/SabXmlParser.idl",
                "python/pyproject.toml", "python/sabxml/interfaces.pyi")}, files)
        for name in "README.txt", "register.cmd":
            text = (self.root / name).read_bytes()
            self.assertEqual(text.count(b"\n"), text.count(b"\r\n"))
            self.assertNotIn(b"@", text.replace(b"@echo", b""))
        named = set(re.findall(r"\b(?:bin|x64|x86)\\(\S+\.(?:exe|dll|tlb))",
                               (self.root / "README.txt").read_text()))
        self.assertTrue(named and all(any(file.endswith(name.replace("\\", "/")) for file in files)
                                      for name in named), named)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
