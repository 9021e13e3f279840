"""Reads the project's interface definitions.

The language is the part of IDL that the project uses, written regularly: one member a line, each
attribute list complete before what it belongs to. Whatever is not known is refused with its place.
"""

import re
from pathlib import Path

from .model import (Coclass, DefinitionError, EnumValue, Enumeration, Interface, Library, Member,
                    Parameter, Place, Type)

BASE_TYPES = {
    "BSTR", "VARIANT_BOOL", "short", "unsigned short", "int", "long", "unsigned long", "hyper",
    "float", "double", "LONG_PTR", "ULONG_PTR", "GUID",
}
BASE_INTERFACES = {"IDispatch"}
DIRECTIONS = {"in", "out", "retval", "optional"}

MEMBER = re.compile(r"^\[(?P<attributes>.*)\]\s*HRESULT\s+(?P<name>\w+)\((?P<parameters>.*)\);$")
PARAMETER = re.compile(
    r"^\[(?P<directions>[\w, ]+)\]\s*(?:SAFEARRAY\((?P<array>[\w ]+)\)|(?P<type>[\w ]+?))"
    r"\s*(?P<pointers>\**)\s*(?P<name>\w+)$")
GUID = re.compile(r"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")
MACRO = re.compile(r"^#define\s+(?P<name>\w+)\((?P<parameters>[\w, ]*)\)\s*\\$")


class Line:
    def __init__(self, place, text):
        self.place = place
        self.text = text


def source_lines(path, root, macros):
    """The lines of a file with its includes and macro calls replaced by their contents."""
    name = str(path.relative_to(root)) if path.is_relative_to(root) else path.name
    raw = path.read_text(encoding="utf-8").split("\n")
    number = 0
    while number < len(raw):
        text = raw[number]
        number += 1
        place = Place(name, number)
        stripped = text.strip()
        include = re.match(r'^#include\s+"([^"]+)"$', stripped)
        macro = MACRO.match(stripped)
        call = re.match(r"^(\w+)\(([\w, ]*)\)$", stripped)
        if include:
            included = path.parent / include.group(1)
            if not included.is_file():
                raise DefinitionError(place, f"cannot include {include.group(1)}: no such file")
            yield from source_lines(included, root, macros)
        elif macro:
            body = []
            while number < len(raw):
                body_text = raw[number].rstrip()
                number += 1
                body.append((Place(name, number), body_text.rstrip("\\").rstrip()))
                if not body_text.endswith("\\"):
                    break
            parameters = [p.strip() for p in macro.group("parameters").split(",")]
            macros[macro.group("name")] = (parameters, body)
        elif stripped.startswith("#"):
            raise DefinitionError(place, f"unknown directive: {stripped}")
        elif call and call.group(1) in macros:
            parameters, body = macros[call.group(1)]
            arguments = [a.strip() for a in call.group(2).split(",")]
            if len(arguments) != len(parameters):
                raise DefinitionError(place, f"{call.group(1)} takes {len(parameters)} arguments")
            for body_place, body_text in body:
                for parameter, argument in zip(parameters, arguments):
                    body_text = re.sub(rf"\b{parameter}\b", argument, body_text)
                yield Line(body_place, body_text)
        else:
            yield Line(place, text.rstrip())


def split_outside(text, separator=","):
    """Splits at separators outside brackets and quotes."""
    parts, depth, quoted, current = [], 0, False, ""
    for character in text:
        if character == '"':
            quoted = not quoted
        elif not quoted and character in "([":
            depth += 1
        elif not quoted and character in ")]":
            depth -= 1
        if character == separator and depth == 0 and not quoted:
            parts.append(current.strip())
            current = ""
        else:
            current += character
    if current.strip():
        parts.append(current.strip())
    return parts


def attributes(text, place, allowed):
    """"[uuid(x), dual]" as a dictionary; refuses what is not allowed here."""
    result = {}
    for part in split_outside(text):
        match = re.match(r'^(\w+)(?:\((.*)\))?$', part, re.S)
        if not match or match.group(1) not in allowed:
            raise DefinitionError(place, f"unknown attribute: {part}")
        value = match.group(2)
        if value is not None and value.startswith('"'):
            value = value[1:-1]
        if match.group(1) in result:
            raise DefinitionError(place, f"repeated attribute: {part}")
        result[match.group(1)] = value if value is not None else True
    if "uuid" in allowed and not GUID.match(result.get("uuid", "")):
        raise DefinitionError(place, "a uuid of upper-case hexadecimal digits is needed here")
    return result


class Reader:
    def __init__(self, path):
        root = path.parent
        self.lines = list(source_lines(path, root, {}))
        self.index = 0
        self.library = None
        self.comment = []

    def read(self):
        while (line := self.next_statement()) is not None:
            if line.text.startswith('import "'):
                continue
            text = self.attribute_block(line)
            head = self.next_statement()
            match = re.match(r"^library\s+(\w+)$", head.text if head else "")
            if not match or self.library:
                raise DefinitionError(line.place, "one library is expected here")
            known = attributes(text, line.place, {"uuid", "version", "lcid", "helpstring"})
            self.library = Library(head.place, match.group(1), known["uuid"], known["version"],
                                   int(known["lcid"], 16), known["helpstring"])
            self.read_library()
        if not self.library:
            raise DefinitionError(Place("source", 1), "there is no library")
        self.check_names()
        self.library.expanded = [line.text for line in self.lines]
        return self.library

    # Statements are lines without comments; the comment lines before one are kept for it.
    def next_statement(self):
        self.comment = []
        while self.index < len(self.lines):
            line = self.lines[self.index]
            self.index += 1
            text = line.text.strip()
            if text.startswith("//"):
                self.comment.append(text[2:].strip())
            elif not text:
                self.comment = []
            else:
                return Line(line.place, text)
        return None

    def expect(self, text):
        line = self.next_statement()
        if line is None or line.text != text:
            place = line.place if line else self.lines[-1].place
            raise DefinitionError(place, f"'{text}' is expected here")

    def attribute_block(self, line):
        """The text inside an attribute list that may go over several lines."""
        if not line.text.startswith("["):
            raise DefinitionError(line.place, f"not understood: {line.text}")
        text = line.text
        while not text.endswith("]"):
            following = self.next_statement()
            if following is None:
                raise DefinitionError(line.place, "the attribute list has no end")
            text += " " + following.text
        return text[1:-1]

    def read_library(self):
        self.expect("{")
        while True:
            line = self.next_statement()
            if line is None:
                raise DefinitionError(self.library.place, "the library has no end")
            if line.text == "};":
                return
            if re.match(r'^(importlib\("[^"]+"\)|interface\s+\w+);$', line.text):
                continue
            if line.text.startswith("typedef ["):
                self.read_enumeration(line)
                continue
            comment = self.comment
            text = self.attribute_block(line)
            head = self.next_statement()
            interface = re.match(r"^interface\s+(\w+)\s*:\s*(\w+)$", head.text)
            coclass = re.match(r"^coclass\s+(\w+)$", head.text)
            if interface:
                self.read_interface(head, interface.groups(), text, comment)
            elif coclass:
                self.read_coclass(head, coclass.group(1), text)
            else:
                raise DefinitionError(head.place, f"not understood: {head.text}")

    def read_enumeration(self, line):
        match = re.match(r"^typedef \[(.*)\] enum (\w+)$", line.text)
        if not match:
            raise DefinitionError(line.place, f"not understood: {line.text}")
        known = attributes(match.group(1), line.place, {"uuid", "helpstring"})
        enumeration = Enumeration(line.place, match.group(2), known["uuid"], known["helpstring"])
        self.add(self.library.enumerations, enumeration)
        self.expect("{")
        while True:
            row = self.next_statement()
            if row.text == f"}} {enumeration.name};":
                return
            value = re.match(r"^(\w+)\s*=\s*(\d+),?\s*//\s*(.+)$", row.text)
            if not value:
                raise DefinitionError(row.place, f"not understood: {row.text}")
            enumeration.values.append(
                EnumValue(value.group(1), int(value.group(2)), value.group(3)))

    def read_interface(self, line, names, text, comment):
        known = attributes(text, line.place, {
            "object", "uuid", "dual", "oleautomation", "nonextensible", "helpstring",
            "pointer_default"})
        interface = Interface(line.place, names[0], names[1], known["uuid"],
                              known.get("helpstring", ""), comment)
        if interface.base not in BASE_INTERFACES | self.library.interfaces.keys():
            raise DefinitionError(line.place, f"{interface.base} is not defined before its use")
        self.add(self.library.interfaces, interface)
        self.expect("{")
        while True:
            row = self.next_statement()
            if row is None:
                raise DefinitionError(line.place, f"{interface.name} has no end")
            if row.text == "};":
                break
            interface.members.append(self.member(row))
        self.check_members(interface)

    def member(self, line):
        match = MEMBER.match(line.text)
        if not match:
            raise DefinitionError(line.place, f"not a member on one line: {line.text}")
        known = attributes(match.group("attributes"), line.place,
                           {"id", "helpstring", "propget", "propput"})
        if "id" not in known or "helpstring" not in known:
            raise DefinitionError(line.place, "a member needs an id and a helpstring")
        kind = next((k for k in ("propget", "propput") if k in known), "method")
        parameters = [self.parameter(text, line.place)
                      for text in split_outside(match.group("parameters"))]
        directions = [p.directions for p in parameters]
        last = {"propget": [("out", "retval")], "propput": [("in",)]}.get(kind)
        if last and (directions[-1:] != last or not set(directions[:-1]) <= {("in",)}):
            raise DefinitionError(line.place, f"a {kind} takes [in] parameters and, last, one "
                                  f"[{', '.join(last[0])}]")
        if any(p.is_retval for p in parameters[:-1]):
            raise DefinitionError(line.place, "retval must be the last parameter")
        return Member(line.place, line.text, match.group("name"), int(known["id"], 0), kind,
                      known["helpstring"], parameters, self.comment)

    def parameter(self, text, place):
        match = PARAMETER.match(text)
        if not match:
            raise DefinitionError(place, f"parameter not understood: {text}")
        directions = tuple(d.strip() for d in match.group("directions").split(","))
        if not set(directions) <= DIRECTIONS or not set(directions) & {"in", "out"}:
            raise DefinitionError(place, f"unknown direction: {match.group('directions')}")
        name = match.group("array") or match.group("type")
        type_ = Type(name.strip(), len(match.group("pointers")), match.group("array") is not None)
        if "out" in directions and type_.pointers == 0:
            raise DefinitionError(place, f"an [out] parameter must be a pointer: {text}")
        return Parameter(match.group("name"), type_, directions)

    def read_coclass(self, line, name, text):
        known = attributes(text, line.place, {"uuid", "helpstring"})
        coclass = Coclass(line.place, name, known["uuid"], known["helpstring"])
        self.expect("{")
        row = self.next_statement()
        default = re.match(r"^\[default\]\s*interface\s+(\w+);$", row.text)
        if not default:
            raise DefinitionError(row.place, "a coclass has one [default] interface")
        coclass.interface = default.group(1)
        self.expect("};")
        self.add(self.library.coclasses, coclass)

    def add(self, table, definition):
        if definition.name in table:
            raise DefinitionError(definition.place, f"{definition.name} is defined twice")
        table[definition.name] = definition

    def check_members(self, interface):
        slots, kinds_of_id = set(), {}
        for member in interface.members:
            if member.function in slots:
                raise DefinitionError(member.place, f"{member.function} stands here twice")
            slots.add(member.function)
            seen = kinds_of_id.setdefault(member.dispid, {})
            if member.kind in seen or any(name != member.name for name in seen.values()):
                raise DefinitionError(member.place, f"id({member.dispid}) stands here twice")
            if seen and "method" in (*seen, member.kind):
                raise DefinitionError(member.place, f"id({member.dispid}) stands here twice")
            seen[member.kind] = member.name

    def check_names(self):
        """Every name that is used must be known once all is read; every identifier is unique."""
        library = self.library
        guids = {}
        for definition in (library, *library.enumerations.values(), *library.interfaces.values(),
                           *library.coclasses.values()):
            if definition.guid in guids:
                raise DefinitionError(definition.place, f"the uuid of {guids[definition.guid]}")
            guids[definition.guid] = definition.name
        for interface in library.interfaces.values():
            for member in interface.members:
                for parameter in member.parameters:
                    self.check_type(member.place, parameter.type)
        for coclass in library.coclasses.values():
            if coclass.interface not in library.interfaces:
                raise DefinitionError(coclass.place, f"unknown interface: {coclass.interface}")

    def check_type(self, place, type_):
        library = self.library
        if type_.name in library.interfaces:
            known = type_.pointers in (1, 2) and not type_.is_array
        elif type_.name in BASE_TYPES or type_.name in library.enumerations:
            known = type_.pointers <= 1
        else:
            known = False
        if not known:
            raise DefinitionError(place, f"unknown type: {type_}")


def read(path):
    return Reader(Path(path)).read()
