#!/usr/bin/env python3
"""Writes the manual page and the completions of a command-line program from what it says of itself.

usage: clidoc.py PROGRAM OUTPUT_FOLDER

OUTPUT_FOLDER gets PROGRAM.1, PROGRAM.bash, PROGRAM.fish and _PROGRAM (zsh).
"""

import sys
from pathlib import Path

sys.dont_write_bytecode = True

from clidoc import bash, fish, help_text, manual_page, zsh  # noqa: E402


def main():
    program, folder = Path(sys.argv[1]), Path(sys.argv[2])
    command = help_text.read(program)
    version = help_text.output_of(program, "--version").split()[-1]
    folder.mkdir(parents=True, exist_ok=True)
    for name, text in [(f"{command.name}.1", manual_page.write(command, version)),
                       (f"{command.name}.bash", bash.write(command)),
                       (f"{command.name}.fish", fish.write(command)),
                       (f"_{command.name}", zsh.write(command))]:
        (folder / name).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
