"""Objects of a component server as Python objects."""

from collections.abc import Sequence
from ctypes import byref, c_char_p, c_int32, c_uint32

from . import _abi
from ._abi import IID_NULL, VARIANT
from ._call import invoke
from ._errors import Error, MemberError
from ._runtime import runtime
from ._type_info import Member, guid_of, help_of, members_of, name_of, type_info_of
from ._variant import Missing, Ref, taken

_READ = _abi.DISPATCH_METHOD | _abi.DISPATCH_PROPERTYGET


class Object:
    """A component object.

    Its properties are read and written as attributes, its methods are called; letter case does not
    matter. An object belongs to the thread that made it, and lives as long as Python refers to it.
    """

    __slots__ = ("_reference", "__weakref__")
    _members = {}  # of the interface, by their names and by these in small letters

    def __init__(self, reference):
        object.__setattr__(self, "_reference", reference)

    # For names in other letters, for members that the type information does not have, and after
    # every AttributeError.
    def __getattr__(self, name):
        if name in Object.__slots__:  # missing in an object that something else made
            raise AttributeError(name)
        member = self._member(name)
        if member.name not in self._members:
            return BoundMember(self, member)
        if member.name == name:  # reading it has just failed so
            return invoke(self, member, _abi.DISPATCH_PROPERTYGET, (), wrap)
        return getattr(self, member.name)

    def __setattr__(self, name, value):
        member = self._members.get(name) or self._member(name)
        invoke(self, member, _abi.DISPATCH_PROPERTYPUT, (value,), wrap)

    def __dir__(self):
        return sorted({member.name for member in self._members.values()})

    def __repr__(self):
        name = type(self).__name__ if self._members else "object"
        return f"<sabxml {name} at 0x{self._reference.pointer:x}>"  # on any thread

    def __reduce_ex__(self, protocol):
        raise TypeError(f"{self!r} can be neither copied nor pickled: make another with create(), "
                        "and put its properties")

    def __eq__(self, other):
        if not isinstance(other, Object):
            return NotImplemented
        return self._identity() == other._identity()

    def __hash__(self):
        return hash(self._identity())

    def _identity(self):
        return self._reference.query(_abi.IID_IUnknown).get()

    def _find(self, name):
        """The member of a name, or None."""
        if member := self._members.get(name.lower()):
            return member
        text = c_char_p(name.encode("utf-16-le", "surrogatepass") + b"\0")
        id, pointer = c_int32(), self._reference.get()
        code = _abi.Dispatch.get_ids_of_names(pointer, byref(IID_NULL), byref(text), 1,
                                              _abi.LOCALE_USER_DEFAULT, byref(id))
        return None if code < 0 else _undescribed(id.value, name)

    def _member(self, name):
        # What Python itself asks for is no member of a component.
        member = None if name.startswith("__") else self._find(name)
        if member is None:
            raise MemberError(_abi.DISP_E_UNKNOWNNAME, f"{self!r} has no member named {name}")
        return member


class Collection(Object):
    """A collection of objects: a sequence whose elements can be replaced and removed.

    Also any object without type information, which may be one.
    """

    __slots__ = ()

    def __bool__(self):
        return self._find("GetCount") is None or len(self) > 0

    def __len__(self):
        return invoke(self, self._find("GetCount") or self._member("Count"), _READ, (), wrap)

    def __iter__(self):
        try:
            enumerator = invoke(self, _undescribed(_abi.DISPID_NEWENUM, "_NewEnum"), _READ, (), wrap)
        except MemberError:
            return self._walk()
        reference = enumerator._reference.query(_abi.IID_IEnumVARIANT)
        if reference is None:
            raise Error(_abi.E_NOINTERFACE, f"what walks {self!r} is no enumerator")
        return _enumerated(reference)

    def __reversed__(self):
        position = Ref(self.GetTailPosition())
        while position.value:
            yield self.GetPrev(position)

    def __getitem__(self, index):
        if isinstance(index, slice):
            return list(self)[index]
        return self.GetAt(self._position(index))

    def __setitem__(self, index, item):
        if isinstance(index, slice):
            raise TypeError("a slice of a collection cannot be replaced: remove it with del, and use "
                            "AddTail or InsertBefore")
        self.SetAt(self._position(index), item)

    def __delitem__(self, index):
        for position in [self._position(i) for i in range(len(self))[index]] \
                if isinstance(index, slice) else [self._position(index)]:
            self.RemoveAt(position)

    def index(self, value, *bounds):
        """The index of the first element that equals a value; bounds are those of list.index()."""
        if not self._members and (member := self._find("index")):
            return BoundMember(self, member)(value, *bounds)
        try:
            return list(self).index(value, *bounds)
        except ValueError:
            raise ValueError(f"{value!r} is not in the collection") from None

    def count(self, *value):
        """How many elements equal a value; without one it is the member Count."""
        return list(self).count(*value) if value else invoke(self, self._member("count"), _READ, (), wrap)

    def _position(self, index):
        if not hasattr(index, "__index__"):
            raise TypeError("indices of a collection are integers or slices, not "
                            f"{type(index).__name__}")
        count = len(self)
        try:
            return self.FindIndex(range(count)[index])
        except IndexError:
            raise IndexError(f"there is no element {index} among {count}") from None

    def _walk(self):
        position = Ref(self.GetHeadPosition())
        while position.value:
            yield self.GetNext(position)


Sequence.register(Collection)


class Method:
    """A method in the class of an interface, or a property with parameters."""

    def __init__(self, member):
        self.member = member
        self.__name__ = member.name
        self.__doc__ = member.help

    def __get__(self, item, owner=None):
        return self if item is None else BoundMember(item, self.member)

    def __call__(self, item, *values, **named):
        return BoundMember(item, self.member)(*values, **named)

    @property
    def __signature__(self):
        return _signature(self.member, "self")


class BoundMember:
    """A method of an object, to be called, or a property with parameters: Value["Scale"]."""

    __slots__ = ("_object", "_member")

    def __init__(self, object, member):
        self._object, self._member = object, member

    def __call__(self, *values, **named):
        member = self._member
        if not member.parameters and not named:
            return invoke(self._object, member, member.kinds & _READ, values, wrap)
        values = _bound(member, values, named) if named else list(values)
        # Places that a method only writes need not be given: their values are the result then.
        omitted = [Ref() for parameter in member.parameters[len(values):]
                   if parameter.is_out and not parameter.is_in]
        if len(values) + len(omitted) == len(member.parameters):
            values += omitted
        result = invoke(self._object, member, member.kinds & _READ, values, wrap)
        if not omitted:
            return result
        return omitted[0].value if len(omitted) == 1 else tuple(ref.value for ref in omitted)

    def __getitem__(self, index):
        return self(*(index if isinstance(index, tuple) else (index,)))

    def __setitem__(self, index, value):
        index = index if isinstance(index, tuple) else (index,)
        invoke(self._object, self._member, _abi.DISPATCH_PROPERTYPUT, (*index, value), wrap)

    def __get__(self, item, owner=None):  # what help() knows a method by
        return self

    def __repr__(self):
        return f"<{self._member.name} of {self._object!r}>"

    __name__ = property(lambda self: self._member.name)
    __doc__ = property(lambda self: self._member.help)
    __signature__ = property(lambda self: _signature(self._member))


class Opaque:
    """An object that knows no automation, such as an enumerator."""

    __slots__ = ("_reference",)

    def __init__(self, reference):
        self._reference = reference


def wrap(reference, vt):
    dispatch = reference if vt == _abi.VT_DISPATCH else reference.query(_abi.IID_IDispatch)
    return Opaque(reference) if dispatch is None else object_of(dispatch)


def object_of(dispatch):
    """An object of the class of its interface; the reference is one to IDispatch."""
    info = type_info_of(dispatch)
    return Collection(dispatch) if info is None else interface_class(info)(dispatch)


def interface_class(info, known={}):  # the same dictionary at every call
    """The class of the objects that are used through an interface."""
    guid = bytes(guid_of(info))
    if guid not in known:
        known[guid] = _new_class(name_of(info), help_of(info), members_of(info))
    return known[guid]


def _new_class(name, help, members):
    known = {}
    for member in members:
        known[member.name] = known[member.name.lower()] = member
    base = Collection if {"getheadposition", "_newenum"} & known.keys() else Object
    # Members go before the methods of sequences, in any letter case.
    attributes = {python: _attribute(known[python]) for python in ("count", "index") if python in known}
    attributes |= {member.name: _attribute(member) for member in members}
    return type(name, (base,), {"__slots__": (), "__module__": "sabxml.interfaces", "__doc__": help,
                                "_members": known, **attributes})


def _attribute(member):
    if member.is_method() or member.parameters:
        return Method(member)
    return property(lambda item: invoke(item, member, _abi.DISPATCH_PROPERTYGET, (), wrap),
                    lambda item, value: setattr(item, member.name, value), None, member.help)


def _bound(member, values, named):
    """The arguments of a call by their places."""
    values = list(values)
    places = {parameter.name.lower(): i for i, parameter in enumerate(member.parameters)}
    for name, value in named.items():
        place = places.get(name.lower())
        if place is None:
            raise TypeError(f"{member.name} has no parameter named {name}; it has "
                            f"{', '.join(p.name for p in member.parameters) or 'none'}")
        if place < len(values) and values[place] is not Missing:
            raise TypeError(f"{member.name} is given {name} twice")
        values += [Missing] * (place + 1 - len(values))
        values[place] = value
    for value, parameter in zip(values, member.parameters):
        if value is Missing and not parameter.is_optional:
            raise TypeError(f"{member.name} lacks the argument {parameter.name}")
    return values


def _signature(member, *before):
    from inspect import Parameter, Signature  # takes longer than all of this package
    kind = Parameter.POSITIONAL_OR_KEYWORD
    parameters = [Parameter(name, kind) for name in before]
    for parameter in member.parameters:
        may_lack = parameter.is_optional or not parameter.is_in
        parameters.append(Parameter(parameter.name, kind,
                                    default=None if may_lack else Parameter.empty))
    return Signature(parameters)


def _undescribed(id, name):
    """A member that the type information does not have; it is called as scripts do."""
    member = Member(id, name)
    member.kinds = _READ
    return member


def _enumerated(enumerator):
    while True:
        value, fetched = VARIANT(), c_uint32()
        code = _abi.EnumVariant.next(enumerator.get(), 1, byref(value), byref(fetched))
        runtime().check(code, "going on in a collection")
        if not fetched.value:
            return
        yield taken(value, wrap)
