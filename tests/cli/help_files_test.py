#!/usr/bin/env python3
"""The manual page and the completions tell what the program tells of itself.

usage: help_files_test.py SABXML FOLDER_OF_THE_FILES
"""

import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SABXML, FOLDER = (Path(path).absolute() for path in sys.argv[1:3])
del sys.argv[1:3]


def run(*command, **options):
    """What a command prints where it succeeds and has nothing to complain of."""
    result = subprocess.run([*map(str, command)], capture_output=True, check=True, **options)
    assert result.stderr == b"", result.stderr
    return result.stdout.decode("utf-8")


def needs(tool):
    return unittest.skipUnless(shutil.which(tool), f"{tool} is not installed")


def helps(path=()):
    """What the program and all its commands print, with their names."""
    text = run(SABXML, *path, "--help")
    yield path, text
    listed = re.search(r"^Subcommands:\n((?:  .*\n)+)", text, re.M)
    for name in re.findall(r"^  (\S+)", listed[1] if listed else "", re.M):
        yield from helps((*path, name))


# the line that is being completed, its last word last; what is offered, all of it or among others
COMPLETIONS = [
    ("sabxml s", ["schema", "settings", "show"], True),
    ("sabxml settings d", ["diff", "dump"], True),
    ("sabxml --colour never settings d", ["diff", "dump"], True),
    ("sabxml --server settings d", ["describe"], True),
    ("sabxml --colour a", ["always", "auto"], True),
    ("sabxml show --colour n", ["never"], True),
    ("sabxml show --js", ["--json"], True),
    ("sabxml show --reg", ["--registry"], True),
    ("sabxml settings set --", ["--backup", "--dry-run", "--server"], False),
    ("sabxml show f", ["first.xml", "folder"], True),
    ("sabxml show first.xml f", ["first.xml", "folder"], True),
    ("sabxml get VeAuto", ["VeAutoUpdateAdminCfgParser"], True),
    ("sabxml get VeAutoUpdateAdminCfgParser f", ["first.xml", "folder"], True),
    ("sabxml describe VePrsAccelC", ["VePrsAccelColl"], True),
    ("sabxml --registry f", ["first.xml", "folder"], True),
    ("sabxml settings diff VeSel", ["VeSelectCfgParser"], True),
    ("sabxml settings list VeSelectCfgParser VeTxt", ["VeTxtParser"], True),
    ("sabxml settings get VeTxtParser first.xml /S", ["/S/G"], True),
    ("sabxml settings diff VeTxtParser no.xml first.xml /S/G /S", ["/S/G"], True),
    ("sabxml describe IVePrsAccelC", ["IVePrsAccelColl"], True),
    ("sabxml settings get VeDisplayCfgParser first.xml /S/G PtSize VeTxt", ["VeTxtParser:"], True),
    ("sabxml settings set VeDisplayCfgParser first.xml /S/G PtSize=1 VeTxt", ["VeTxtParser:"], True),
    ("sabxml settings get VeDisplayCfgParser first.xml /S/G PtSize VeTxtParser:/S/G InC",
     ["InCodePage"], True),
    ("sabxml get VeDisplayCfgParser first.xml /S/G VeTxt", [], True),
    ("sabxml get VeDisplayCfgParser first.xml /S/G PtSize Cursor", ["CursorColor", "CursorSize"], True),
    ("sabxml settings set VeDisplayCfgParser first.xml --backup /S/G PtS", ["PtSize="], True),
    ("sabxml settings get VeNothing first.xml /S/G Pt", [], True),
    ("sabxml check --disable unknown-e", ["unknown-element"], True),
    ("sabxml check --severity unknown-e", ["unknown-element="], True),
    ("sabxml explain RibbonPan", ["RibbonPanel"], True),
    ("sabxml explain CursorC", ["CursorColor"], True),
    ("sabxml explain PtSize se", ["settings"], True),
    ("sabxml schema app", ["application"], True),
]


# Writes down what zsh is about to offer.
ZSH_SETUP = r"""PS1= PS2=; LISTMAX=10000; unsetopt beep prompt_sp
complete-and-tell() { zle complete-word; : >~/done }
zle -N complete-and-tell; bindkey '^I' complete-and-tell '^U' kill-buffer
fpath=("$FUNCTIONS" $fpath); autoload -Uz compinit; compinit -u -D
compadd() {
  local -a words
  case " $* " in
    *" -"[OAD]" "*) ;;
    *) builtin compadd -A words "$@"; print -rl -- $words >>~/offered ;;
  esac
  builtin compadd "$@"
}
"""


class Files(unittest.TestCase):
    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.folder / "first.xml").write_text("<S><G><PtSize>1</PtSize></G></S>")
        (self.folder / "folder").mkdir()
        self.environment = {**os.environ, "PATH": f"{SABXML.parent}:{os.environ['PATH']}",
                            "HOME": str(self.folder), "LC_ALL": "C.UTF-8"}
        self.here = {"cwd": self.folder, "env": self.environment}

    def test_manual_page_has_everything(self):
        page = (FOLDER / "sabxml.1").read_text(encoding="utf-8").replace("\\-", "-")
        found = list(helps())
        self.assertGreater(len(found), 10)
        for path, text in found:
            section = page
            if path:
                title = f'.SS "{" ".join(path)}"'
                self.assertIn(title, page)
                section = page.partition(title)[2].partition("\n.SS ")[0]
            options = re.search(r"^Options:\n((?:  .*\n)+)", text, re.M)[1]
            for option in re.findall(r"^  (?:-\w,)?(--[\w-]+)", options, re.M):
                with self.subTest(path, option=option):
                    # --help is that of the program; it is told once.
                    self.assertIn(f"\\fB{option}\\fR", page if option == "--help" else section)
        for section in ("NAME", "SYNOPSIS", "EXAMPLES", "ENVIRONMENT", "EXIT STATUS"):
            self.assertRegex(page, f'(?m)^\\.SH "?{section}')

    @needs("groff")
    def test_manual_page_is_understood(self):
        output = run("groff", "-man", "-ww", "-Tutf8", "-rLL=200n", FOLDER / "sabxml.1")
        text = re.sub(".\b", "", re.sub(r"\x1b\[[\d;]*m", "", output))
        for line in ("sabxml settings diff [OPTIONS] CLASS A B NODEPATH [NODEPATH_B]",
                     "sabxml show --json templates/*.xml", "0x… is understood"):
            self.assertIn(line, text)

    def check_completions(self, complete):
        for line, expected, is_all in COMPLETIONS:
            with self.subTest(line):
                offered = complete(line)
                self.assertEqual(expected, [word for word in offered if is_all or word in expected])

    def test_bash(self):
        script = ('. "$1"; IFS=" " read -r -a COMP_WORDS <<<"$2"; '
                  'COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _sabxml; printf "%s\\n" "${COMPREPLY[@]}"')

        def complete(line):
            return sorted(run("bash", "-c", script, "bash", FOLDER / "sabxml.bash", line,
                              **self.here).split())

        self.check_completions(complete)
        for line in ("sabxml --colour = a", "sabxml show --colour = a"):  # as bash splits it
            self.assertEqual(["always", "auto"], complete(line))
        self.assertEqual(["InCodePage="], complete(
            "sabxml settings set VeDisplayCfgParser first.xml /S/G PtSize = 1 VeTxtParser : /S/G InC"))
        self.assertEqual([], complete("sabxml get VeAppParser first.xml f"))

    @needs("fish")
    def test_fish(self):
        def complete(line):
            output = run("fish", "--no-config", "-c", "source $argv[1]; complete -C $argv[2]",
                         FOLDER / "sabxml.fish", line, **self.here)
            return sorted(line.split("\t")[0].rstrip("/") for line in output.splitlines())

        self.check_completions(complete)

    @needs("zsh")
    def test_zsh(self):
        # Its completion works in an interactive line only, so one is typed on a terminal.
        controller, terminal = pty.openpty()
        environment = {**self.environment, "FUNCTIONS": str(FOLDER), "TERM": "dumb"}
        with subprocess.Popen(["zsh", "-f", "-i"], cwd=self.folder, env=environment,
                              stdin=terminal, stdout=terminal, stderr=terminal,
                              start_new_session=True) as shell:
            os.close(terminal)

            def type_keys(keys):
                """Types nothing more until the last key is told to be done."""
                done = self.folder / "done"
                os.write(controller, keys.encode())
                for _ in range(600):
                    if select.select([controller], [], [], 0.05)[0]:
                        os.read(controller, 65536)
                    if done.exists():
                        return done.unlink()
                raise AssertionError(f"zsh does not answer to {keys!r}")

            def complete(line):
                type_keys(f"\x15{line}\t")
                offered = self.folder / "offered"
                words = offered.read_text(encoding="utf-8").split() if offered.exists() else []
                offered.unlink(missing_ok=True)
                return sorted({word.rstrip("/") for word in words})

            type_keys(f"{ZSH_SETUP}: >~/done\n")
            self.check_completions(complete)
            shell.kill()
        os.close(controller)


if __name__ == "__main__":
    unittest.main()
