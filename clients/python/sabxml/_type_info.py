"""What a component says of itself: members with their parameters, and the server's types."""

from ctypes import (byref, c_int, c_int32, c_uint, c_uint16, c_void_p, create_string_buffer,
                    sizeof)

from . import _abi
from ._abi import ELEMDESC, FUNCDESC, GUID, TYPEATTR, TYPEDESC, TypeInfo, TypeLib
from ._runtime import Reference, runtime
from ._variant import INTEGERS

_names = c_void_p * 32  # of a member and its parameters


class Parameter:
    """A parameter of a member, or its result, which has no name."""

    __slots__ = ("name", "is_object", "is_integer", "is_in", "is_out", "is_optional")

    def __init__(self, element, name=None):
        described, pointers, flags = element.type, 0, element.flags
        while described.vt == _abi.VT_PTR:
            described, pointers = TYPEDESC.from_address(described.inner), pointers + 1
        self.name = name
        self.is_integer = described.vt in INTEGERS
        self.is_in = bool(flags & _abi.PARAMFLAG_FIN)
        self.is_out = bool(flags & _abi.PARAMFLAG_FOUT)
        self.is_optional = bool(flags & _abi.PARAMFLAG_FOPT)
        self.is_object = pointers > (1 if self.is_out else 0)


class Member:
    """A method or a property of an interface: its identifier, and how it is used."""

    __slots__ = ("id", "name", "help", "kinds", "parameters", "result")

    def __init__(self, id, name, help=""):
        self.id, self.name, self.help = id, name, help
        self.kinds = 0  # DISPATCH_METHOD and so on, together
        self.parameters, self.result = (), None

    def add(self, function, names):
        """Tells of one of the functions that a member has, with the names of its parameters."""
        if self.kinds and function.invkind == _abi.DISPATCH_PROPERTYPUT:
            self.kinds |= function.invkind
            return  # what is written is what is read
        self.kinds |= function.invkind
        values = [Parameter(ELEMDESC.from_address(function.parameters + i * sizeof(ELEMDESC)), name)
                  for i, name in zip(range(function.parameter_count), [*names, None])]
        if function.invkind == _abi.DISPATCH_PROPERTYPUT:
            self.result = values.pop()
        else:
            self.result = Parameter(function.result)
        self.parameters = tuple(values)

    def is_method(self):
        return bool(self.kinds & _abi.DISPATCH_METHOD)


def guid_of(info):
    """The identifier of a type."""
    return _attributes(info, lambda attributes: GUID.from_buffer_copy(attributes))


def name_of(info):
    return _texts(info, -1, False)


def help_of(info):
    return _texts(info, -1, True)


def members_of(info):
    """The members of an interface in their order, without those of IUnknown and IDispatch."""
    members = {}
    for index in range(_attributes(info, lambda attributes: attributes.function_count)):
        place = c_void_p()
        _check(TypeInfo.get_func_desc(info.get(), index, byref(place)))
        try:
            function = FUNCDESC.from_address(place.value)
            id = function.memid
            if id & 0xFFFE0000 == 0x60000000:  # of IUnknown and IDispatch
                continue
            member, names = members.get(id), ()
            if member is None:
                name, *names = _member_names(info, id)
                member = members[id] = Member(id, name, _texts(info, id, True))
            member.add(function, names)
        finally:
            TypeInfo.release_func_desc(info.get(), place)
    return list(members.values())


def type_info_of(dispatch):
    """The type information of an object, or None."""
    info = c_void_p()
    code = _abi.Dispatch.get_type_info(dispatch.get(), 0, _abi.LOCALE_USER_DEFAULT, byref(info))
    return None if code < 0 else Reference(info.value)


def type_library_of(dispatch):
    """The type library that an object's type information is from."""
    library = c_void_p()
    info = type_info_of(dispatch)
    _check(TypeInfo.get_containing_type_lib(info.get(), byref(library), None))
    return Reference(library.value)


def type_names(library, wanted):
    """The names of the types of a kind."""
    pointer, kind = c_void_p(), c_int()
    for index in range(TypeLib.get_type_info_count(library.get())):
        _check(TypeLib.get_type_info_type(library.get(), index, byref(kind)))
        if kind.value == wanted:
            _check(TypeLib.get_type_info(library.get(), index, byref(pointer)))
            yield name_of(Reference(pointer.value))


def find_type(library, name, wanted):
    """The type information of a type of a kind by its name in any letter case, or None."""
    infos, members, count = (c_void_p * 8)(), (c_int32 * 8)(), c_uint16(8)
    text = create_string_buffer(name.encode("utf-16-le", "surrogatepass") + b"\0")  # which may be changed to the letters of the library
    _check(TypeLib.find_name(library.get(), text, 0, infos, members, byref(count)))
    found = [Reference(info) for info in infos[:count.value]]
    for info, member in zip(found, members):
        if member == -1 and _attributes(info, lambda attributes: attributes.kind) == wanted:
            return info
    return None


def _check(code):
    runtime().check(code, "reading the type information")


def _attributes(info, read):
    place = c_void_p()
    _check(TypeInfo.get_type_attr(info.get(), byref(place)))
    try:
        return read(TYPEATTR.from_address(place.value))
    finally:
        TypeInfo.release_type_attr(info.get(), place)


def _texts(info, member, is_help):
    text = c_void_p()
    places = (None, byref(text)) if is_help else (byref(text), None)
    _check(TypeInfo.get_documentation(info.get(), member, *places, None, None))
    return runtime().taken_text(text.value)


def _member_names(info, id):
    names, count = _names(), c_uint()
    _check(TypeInfo.get_names(info.get(), id, names, len(names), byref(count)))
    return [runtime().taken_text(name) for name in names[:count.value]]
