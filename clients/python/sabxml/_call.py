"""Calls of members through IDispatch."""

from ctypes import addressof, byref, c_int32, c_uint32

from . import _abi
from ._abi import DISPPARAMS, EXCEPINFO, IID_NULL, LOCALE_USER_DEFAULT, VARIANT
from ._errors import Error, MemberError
from ._runtime import enter_thread, runtime
from ._variant import Ref, clear, refer, store, taken

_NO_INTERFACE = byref(IID_NULL)
_PUT = c_int32(_abi.DISPID_PROPERTYPUT)


class Frame:
    """The memory of a call with a number of arguments. Making it takes longer than the call itself,
    so calls that have ended leave theirs to later ones."""

    __slots__ = ("arguments", "references", "parameters", "result", "exception", "bad", "addresses")

    def __init__(self, count):
        self.arguments = (VARIANT * count)()
        self.references = []
        self.parameters = DISPPARAMS(addressof(self.arguments), addressof(_PUT), count, 0)
        self.result, self.exception, self.bad = VARIANT(), EXCEPINFO(), c_uint32(0xFFFFFFFF)
        self.addresses = (byref(self.parameters), byref(self.result), byref(self.exception),
                          byref(self.bad))

    def fill(self, values, parameters):
        """Puts the arguments into their places, which are in reverse."""
        for index, (value, parameter) in enumerate(zip(values, parameters)):
            variant = self.arguments[len(values) - 1 - index]
            if isinstance(value, Ref):
                place = VARIANT()
                self.references.append((value, place, parameter))
                store(place, value.value)
                refer(variant, place)
            else:
                store(variant, value, parameter is not None and parameter.is_object)

    def clear(self):
        """Frees the arguments; a variant that refers to another does not own it."""
        for variant in self.arguments:
            clear(variant)
        for _, place, _ in self.references:
            clear(place)
        self.references.clear()


_frames = [[] for _ in range(8)]  # by the number of arguments; each list is changed in one step


def invoke(item, member, flags, values, wrap):
    """Calls a member of an object with these arguments, the new value of a property last."""
    reference = item._reference
    pointer = reference.get()
    enter_thread()
    count = len(values)
    frames = _frames[count] if count < len(_frames) else []
    frame = frames.pop() if frames else Frame(count)
    is_put = flags == _abi.DISPATCH_PROPERTYPUT
    try:
        if count:
            parameters = member.parameters
            if is_put:
                parameters = (*parameters, member.result)
            if len(parameters) < count:
                parameters = (*parameters, *[None] * (count - len(parameters)))
            frame.fill(values, parameters)
        frame.parameters.named_count = is_put
        arguments, result, exception, bad = frame.addresses
        code = _abi.Dispatch.invoke.of(pointer)(
            pointer, member.id, _NO_INTERFACE, LOCALE_USER_DEFAULT, flags, arguments,
            None if is_put else result, exception, bad)
        if code < 0:
            raise _failure(item, member, code & 0xFFFFFFFF, frame, count)
        value = None if is_put else taken(frame.result, wrap)
        for ref, place, parameter in frame.references:
            ref.value = exact(parameter, taken(place, wrap))
    finally:
        if count:
            frame.clear()
    frames.append(frame)  # not after a failure, which may have left something
    return exact(member.result, value)


def exact(parameter, value):
    """An integer that travelled as a floating-point number, for the sake of scripts."""
    return int(value) if isinstance(value, float) and parameter and parameter.is_integer else value


def _failure(item, member, code, frame, count):
    if code == _abi.DISP_E_EXCEPTION:
        exception = frame.exception
        description, source, _ = [runtime().taken_text(text) for text in
                                  (exception.description, exception.source, exception.help_file)]
        return Error(exception.scode or exception.wCode, description or f"{member.name} failed",
                     source)
    if code == _abi.DISP_E_MEMBERNOTFOUND:
        return MemberError(code, f"{member.name} of {item!r} cannot be used so")
    if code == _abi.DISP_E_BADPARAMCOUNT:
        return Error(code, f"{member.name} does not take {count} arguments")
    bad = frame.bad.value
    place = f"argument {count - bad} of {member.name}" if bad < count else member.name
    return Error(code, f"{place} is of another type, or out of its range")
