"""Objects of a component server as Python objects."""

import operator
from ctypes import byref, c_int32, c_uint32, c_void_p, cast, create_string_buffer

from . import _abi
from ._abi import EXCEPINFO, IID_NULL, VARIANT
from ._errors import Error, MemberError
from ._runtime import enter_thread, runtime
from ._type_info import Member, interface_of
from ._variant import Arguments, Ref, taken

_READ = _abi.DISPATCH_METHOD | _abi.DISPATCH_PROPERTYGET


class Object:
    """A component object.

    Its properties are read and written as attributes, its methods are called; letter case does not
    matter. Collections can be iterated, counted and indexed. An object belongs to the thread that
    made it, and lives as long as Python refers to it.
    """

    __slots__ = ("_reference", "_interface", "__weakref__")

    def __init__(self, reference):
        object.__setattr__(self, "_reference", reference)
        object.__setattr__(self, "_interface", interface_of(reference))

    # One of the parts that __init__ sets is missing in an object that something else made.
    def __getattr__(self, name):
        if name in Object.__slots__:
            raise AttributeError(name)
        member = self._member(name)
        if member.is_plain_property():
            return self._invoke(member, _abi.DISPATCH_PROPERTYGET)
        return BoundMember(self, member)

    def __setattr__(self, name, value):
        self._invoke(self._member(name), _abi.DISPATCH_PROPERTYPUT, value)

    def __dir__(self):
        members = self._interface.members.values() if self._interface else ()
        return sorted(member.name for member in members)

    def __repr__(self):
        name = self._interface.name if self._interface else "object"
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

    def __iter__(self):
        enumerator = self._enumerator()
        if enumerator is not None:
            return _enumerated(enumerator)
        if self._find("GetHeadPosition") is None:
            raise TypeError(f"{self!r} is no collection")
        return self._walk()

    def __len__(self):
        member = self._find("GetCount") or self._find("Count")
        if member is None:
            raise TypeError(f"{self!r} is no collection")
        return self._invoke(member, _READ)

    def __bool__(self):
        return self._find("GetCount") is None or len(self) > 0

    def __getitem__(self, index):
        if self._find("FindIndex") is None:
            raise TypeError(f"{self!r} is no collection")
        if isinstance(index, slice):
            return list(self)[index]
        index = operator.index(index)
        count = len(self)
        if not -count <= index < count:
            raise IndexError(f"there is no element {index} among {count}")
        return self.GetAt(self.FindIndex(index % count))

    def _identity(self):
        return self._reference.query(_abi.IID_IUnknown).get()

    def _find(self, name):
        """The member of a name, or None."""
        text = create_string_buffer(name.encode("utf-16-le", "surrogatepass") + b"\0")
        names, id = c_void_p(cast(text, c_void_p).value), c_int32()
        code = _abi.Dispatch.get_ids_of_names(self._reference.get(), byref(IID_NULL), byref(names),
                                              1, _abi.LOCALE_USER_DEFAULT, byref(id))
        if code < 0:
            return None
        described = self._interface.members.get(id.value) if self._interface else None
        return described or _undescribed(id.value, name)

    def _member(self, name):
        # What Python itself asks for is no member of a component.
        member = None if name.startswith("__") else self._find(name)
        if member is None:
            raise MemberError(_abi.DISP_E_UNKNOWNNAME, f"{self!r} has no member named {name}")
        return member

    def _invoke(self, member, flags, *values):
        is_put = flags == _abi.DISPATCH_PROPERTYPUT
        if is_put:
            parameters = [*member.parameters, member.result]
        else:
            parameters = member.parameters
        # Places that a method only writes need not be named: their values are the result then.
        omitted = [Ref() for parameter in parameters[len(values):]
                   if not is_put and parameter.is_out and not parameter.is_in]
        if len(values) + len(omitted) != len(parameters):
            omitted = []
        enter_thread()
        arguments = Arguments([*values, *omitted], parameters, is_put)
        result, exception, bad = VARIANT(), EXCEPINFO(), c_uint32(0xFFFFFFFF)
        try:
            code = _abi.Dispatch.invoke(
                self._reference.get(), member.id, byref(IID_NULL), _abi.LOCALE_USER_DEFAULT, flags,
                byref(arguments.parameters), None if is_put else byref(result), byref(exception),
                byref(bad))
            if code < 0:
                raise self._failure(member, code & 0xFFFFFFFF, exception, len(values), bad.value)
            arguments.take_references(wrap)
            value = taken(result, wrap)
        finally:
            arguments.free()
        if omitted:
            values = [ref.value for ref in omitted]
            return values[0] if len(values) == 1 else tuple(values)
        return member.result.exact(value) if member.result else value

    def _failure(self, member, code, exception, count, bad):
        if code == _abi.DISP_E_EXCEPTION:
            texts = [runtime().taken_text(text) for text in
                     (exception.description, exception.source, exception.help_file)]
            return Error(exception.scode or exception.wCode, texts[0] or f"{member.name} failed",
                         texts[1])
        if code == _abi.DISP_E_MEMBERNOTFOUND:
            return MemberError(code, f"{member.name} of {self!r} cannot be used so")
        if code == _abi.DISP_E_BADPARAMCOUNT:
            return Error(code, f"{member.name} does not take {count} arguments")
        place = f"argument {count - bad} of {member.name}" if bad < count else member.name
        return Error(code, f"{place} is of another type, or out of its range")

    def _enumerator(self):
        try:
            enumerator = self._invoke(_undescribed(_abi.DISPID_NEWENUM, "_NewEnum"), _READ)
        except MemberError:
            return None
        reference = enumerator._reference.query(_abi.IID_IEnumVARIANT)
        if reference is None:
            raise Error(_abi.E_NOINTERFACE, f"what walks {self!r} is no enumerator")
        return reference

    def _walk(self):
        position = Ref(self.GetHeadPosition())
        while position.value:
            yield self.GetNext(position)


class BoundMember:
    """A method of an object, to be called, or a property with parameters: Value["Scale"]."""

    __slots__ = ("_object", "_member")

    def __init__(self, object, member):
        self._object, self._member = object, member

    def __call__(self, *values):
        return self._object._invoke(self._member, self._member.kinds & _READ or _READ, *values)

    def __getitem__(self, index):
        return self(*(index if isinstance(index, tuple) else (index,)))

    def __setitem__(self, index, value):
        index = index if isinstance(index, tuple) else (index,)
        self._object._invoke(self._member, _abi.DISPATCH_PROPERTYPUT, *index, value)

    def __repr__(self):
        return f"<{self._member.name} of {self._object!r}>"


class Opaque:
    """An object that knows no automation, such as an enumerator."""

    __slots__ = ("_reference",)

    def __init__(self, reference):
        self._reference = reference


def wrap(reference):
    dispatch = reference.query(_abi.IID_IDispatch)
    return Opaque(reference) if dispatch is None else Object(dispatch)


def _undescribed(id, name):
    """A member that the type information does not tell of; it is called as scripts do."""
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
