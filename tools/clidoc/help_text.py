"""Reads what a program and its subcommands print for --help, in the manner of CLI11."""

import re
import subprocess
from dataclasses import dataclass, field

COLUMN = 30  # where explanations begin


@dataclass
class Option:
    names: list  # ["-h", "--help"]
    value: str  # the placeholder of its value, or nothing
    choices: list  # all values that it takes, where these are few
    help: str


@dataclass
class Positional:
    name: str
    is_required: bool
    is_repeated: bool
    help: str

    @property
    def kind(self):
        """What a shell can offer for it: a class of the server, a file, or nothing."""
        return {"CLASS": "class", "FILE": "file", "A": "file", "B": "file"}.get(self.name, "")


@dataclass
class Command:
    path: list  # names of the subcommands that lead to it; empty for the program
    name: str  # of the program
    summary: str = ""
    usage: str = ""
    positionals: list = field(default_factory=list)
    options: list = field(default_factory=list)
    subcommands: list = field(default_factory=list)
    footer: str = ""

    def all(self):
        """The command and all below it, in their order."""
        yield self
        for subcommand in self.subcommands:
            yield from subcommand.all()


def output_of(program, *arguments):
    result = subprocess.run([str(program), *arguments], capture_output=True, check=True)
    return result.stdout.decode("utf-8")


def read(program, path=()):
    command = Command(list(path), program.stem)
    text = output_of(program, *path, "--help")
    head, _, rest = text.partition("Usage: ")
    command.summary = " ".join(head.split())
    command.usage, _, rest = rest.partition("\n")
    while rest.startswith("\n"):
        heading, _, after = rest[1:].partition("\n")
        if heading not in ("Positionals:", "Options:", "Subcommands:"):
            break
        lines, _, rest = after.partition("\n\n")
        rest = "\n" + rest
        for name, explanation in _entries(lines):
            if heading == "Positionals:":
                command.positionals.append(_positional(name, explanation))
            elif heading == "Options:":
                command.options.append(_option(name, explanation))
            else:
                command.subcommands.append(read(program, (*path, name)))
    command.footer = rest.strip("\n")
    return command


def _entries(lines):
    """Names with their explanations, which are in a column or, for long names, below."""
    entries = []
    for line in lines.split("\n"):
        if line.startswith(" " * COLUMN):
            entries[-1][1] = f"{entries[-1][1]} {line.strip()}".strip()
        elif line[COLUMN - 1:COLUMN].strip():
            entries.append([line.strip(), ""])
        else:
            entries.append([line[:COLUMN].strip(), line[COLUMN:].strip()])
    return entries


def _option(text, explanation):
    names, _, value = text.partition(" ")
    choices = re.search(r"\{(.*)\}", value)
    value = re.sub(r":?\{.*\}| ?REQUIRED", "", value)
    return Option(names.split(","), value, choices[1].split(",") if choices else [], explanation)


def _positional(text, explanation):
    name, *words = text.split()
    return Positional(name, "REQUIRED" in words, "..." in words, explanation)
