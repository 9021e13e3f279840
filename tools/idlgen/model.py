"""What an interface definition says, as plain objects."""

from dataclasses import dataclass, field


@dataclass
class Place:
    """A line of a source file, for messages and for generated comments."""

    file: str
    line: int

    def __str__(self):
        return f"{self.file}:{self.line}"


class DefinitionError(Exception):
    """Something in the source that is wrong or that the generator does not know."""

    def __init__(self, place, message):
        super().__init__(f"{place}: {message}")


@dataclass
class Type:
    """A parameter's type: a base name, pointers, and whether it is an array of the base."""

    name: str
    pointers: int = 0
    is_array: bool = False

    def __str__(self):
        base = f"SAFEARRAY({self.name})" if self.is_array else self.name
        return base + "*" * self.pointers


@dataclass
class Parameter:
    name: str
    type: Type
    directions: tuple  # of "in", "out", "retval", "optional"

    @property
    def is_out(self):
        return "out" in self.directions

    @property
    def is_in(self):
        return "in" in self.directions

    @property
    def is_retval(self):
        return "retval" in self.directions


@dataclass
class Member:
    place: Place
    source: str
    name: str
    dispid: int
    kind: str  # "method", "propget", "propput"
    help: str
    parameters: list
    comment: list

    @property
    def function(self):
        """The C++ name: get_X and put_X for properties."""
        return {"method": "", "propget": "get_", "propput": "put_"}[self.kind] + self.name


@dataclass
class Interface:
    place: Place
    name: str
    base: str
    guid: str
    help: str
    comment: list
    members: list = field(default_factory=list)


@dataclass
class EnumValue:
    name: str
    value: int
    help: str


@dataclass
class Enumeration:
    place: Place
    name: str
    guid: str
    help: str
    values: list = field(default_factory=list)


@dataclass
class Coclass:
    place: Place
    name: str
    guid: str
    help: str
    interface: str = ""


@dataclass
class Library:
    place: Place
    name: str
    guid: str
    version: str
    lcid: int
    help: str
    enumerations: dict = field(default_factory=dict)
    interfaces: dict = field(default_factory=dict)
    coclasses: dict = field(default_factory=dict)
    expanded: list = field(default_factory=list)  # the whole source, one text
