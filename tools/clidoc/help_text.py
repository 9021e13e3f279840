"""Reads what a program and its subcommands print for --help, in the manner of CLI11."""

import re
import subprocess
from dataclasses import dataclass, field

COLUMN = 30  # where explanations begin


@dataclass(frozen=True)
class Kind:
    """What a shell can offer for a word: files, or what "PROGRAM complete KIND OF" prints."""

    name: str
    of: int = -1  # place of the positional argument that it is about
    suffix: str = ""  # of each candidate, after which the word goes on

    def __str__(self):
        """One word, for the script of a shell: key@0="""
        return self.name + (f"@{self.of}" if self.of >= 0 else "") + self.suffix


FILE, NOTHING = Kind("file"), Kind("")
KINDS = {"FILE": FILE, "A": FILE, "B": FILE, "DUMP": FILE, "ELEMENT": Kind("element"),
         "KIND": Kind("kind"), "RULE": Kind("rule"), "RULE=LEVEL": Kind("rule", suffix="="),
         "CLASS:NODEPATH": Kind("group", suffix=":"), "VALUE": NOTHING, "NUMBER": NOTHING}
# What these are about: another positional argument of the command.
SUBJECTS = {"KEY": ("key", "CLASS", ""), "KEY=VALUE": ("key", "CLASS", "="),
            "NODEPATH": ("node", "FILE", ""), "NODEPATH_B": ("node", "B", "")}


@dataclass
class Option:
    names: list  # ["-h", "--help"]
    value: str  # the placeholder of its value, or nothing
    choices: list  # all values that it takes, where these are few
    help: str

    @property
    def kind(self):
        return KINDS.get(self.value, FILE)


@dataclass
class Positional:
    name: str
    is_required: bool
    is_repeated: bool
    help: str


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

    def kind_of(self, positional):
        names = [other.name for other in self.positionals]
        if positional.name == "CLASS":
            return Kind("group" if self.path[0] in ("get", "settings") else "class")
        if positional.name == "KIND" and self.path[0] == "explain":
            return Kind("explained-kind")
        if positional.name not in SUBJECTS:
            return KINDS.get(positional.name, NOTHING)
        kind, subject, suffix = SUBJECTS[positional.name]
        if kind == "key" and self.path[0] == "settings" and "NODEPATH" in names:
            kind = "key-or-block"
        return Kind(kind, names.index(subject if subject in names else "A"), suffix)

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
