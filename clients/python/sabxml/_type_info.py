"""What a component says of itself: members with their parameters, and the server's classes."""

from ctypes import POINTER, byref, c_int, c_void_p

from . import _abi
from ._abi import FUNCDESC, TYPEATTR, TYPEDESC, TypeInfo, TypeLib
from ._runtime import Reference, runtime
from ._variant import INTEGERS


class Value:
    """The type of a parameter or of a result, and the direction of a parameter."""

    __slots__ = ("vt", "is_object", "is_in", "is_out")

    def __init__(self, element):
        described, pointers = element.type, 0
        while described.vt == _abi.VT_PTR:
            described, pointers = TYPEDESC.from_address(described.inner), pointers + 1
        self.vt = described.vt
        self.is_in = bool(element.flags & _abi.PARAMFLAG_FIN)
        self.is_out = bool(element.flags & _abi.PARAMFLAG_FOUT)
        self.is_object = pointers > (1 if self.is_out else 0)

    def exact(self, value):
        """An integer that travelled as a floating-point number, for the sake of scripts."""
        return int(value) if isinstance(value, float) and self.vt in INTEGERS else value


class Member:
    """A method or a property of an interface: its identifier, and how it is used."""

    __slots__ = ("id", "name", "kinds", "parameters", "result")

    def __init__(self, id, name):
        self.id, self.name = id, name
        self.kinds = 0  # DISPATCH_METHOD and so on, together
        self.parameters, self.result = [], None

    def add(self, function):
        self.kinds |= function.invkind
        if function.invkind == _abi.DISPATCH_PROPERTYPUT and self.parameters:
            return  # those of reading are among those of writing
        values = [Value(function.parameters[i]) for i in range(function.parameter_count)]
        if function.invkind == _abi.DISPATCH_PROPERTYPUT:
            self.parameters, self.result = values[:-1], values[-1]
        else:
            self.parameters, self.result = values, Value(function.result)

    def is_plain_property(self):
        return not self.kinds & _abi.DISPATCH_METHOD and not self.parameters


class Interface:
    """The members of an interface by identifier."""

    def __init__(self, info):
        self.name = _name(info, -1)
        self.members = {}
        attributes = POINTER(TYPEATTR)()
        _check(TypeInfo.get_type_attr(info.get(), byref(attributes)))
        count = attributes.contents.function_count
        TypeInfo.release_type_attr(info.get(), attributes)
        for index in range(count):
            function = POINTER(FUNCDESC)()
            _check(TypeInfo.get_func_desc(info.get(), index, byref(function)))
            described = function.contents
            # Members of IUnknown and IDispatch stand at these identifiers.
            if described.memid & 0xFFFE0000 != 0x60000000:
                if described.memid not in self.members:
                    name = _name(info, described.memid)
                    self.members[described.memid] = Member(described.memid, name)
                self.members[described.memid].add(described)
            TypeInfo.release_func_desc(info.get(), function)


def interface_of(dispatch, known={}):  # the same dictionary at every call
    """The interface that an object is used through; None for one without type information."""
    info = c_void_p()
    if _abi.Dispatch.get_type_info(dispatch.get(), 0, _abi.LOCALE_USER_DEFAULT, byref(info)) < 0:
        return None
    info = Reference(info.value)
    guid = _guid(info)
    if guid not in known:
        known[guid] = Interface(info)
    return known[guid]


def classes_of(dispatch):
    """Identifiers of the classes in an object's type library, by name."""
    pointer = c_void_p()
    _check(_abi.Dispatch.get_type_info(dispatch.get(), 0, _abi.LOCALE_USER_DEFAULT, byref(pointer)))
    info = Reference(pointer.value)
    _check(TypeInfo.get_containing_type_lib(info.get(), byref(pointer), None))
    library = Reference(pointer.value)
    classes = {}
    for index in range(TypeLib.get_type_info_count(library.get())):
        kind = c_int()
        _check(TypeLib.get_type_info_type(library.get(), index, byref(kind)))
        if kind.value == _abi.TKIND_COCLASS:
            _check(TypeLib.get_type_info(library.get(), index, byref(pointer)))
            info = Reference(pointer.value)
            classes[_name(info, -1)] = _guid(info)
    return classes


def _check(code):
    runtime().check(code, "reading the type information")


def _name(info, member):
    name = c_void_p()
    _check(TypeInfo.get_documentation(info.get(), member, byref(name), None, None, None))
    return runtime().taken_text(name)


def _guid(info):
    attributes = POINTER(TYPEATTR)()
    _check(TypeInfo.get_type_attr(info.get(), byref(attributes)))
    text = str(attributes.contents.guid)
    TypeInfo.release_type_attr(info.get(), attributes)
    return text
