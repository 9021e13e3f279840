"""Values of automation as Python's, and back."""

import ctypes
import os
from ctypes import byref, c_int32, c_uint16, c_void_p

from . import _abi
from ._abi import VARIANT
from ._runtime import Reference, runtime

# Where a value of a type stands in the variant.
_NUMBERS = {_abi.VT_I1: "i1", _abi.VT_UI1: "ui1", _abi.VT_I2: "i2", _abi.VT_UI2: "ui2",
            _abi.VT_I4: "i4", _abi.VT_UI4: "ui4", _abi.VT_I8: "i8", _abi.VT_UI8: "ui8",
            _abi.VT_INT: "i4", _abi.VT_UINT: "ui4", _abi.VT_ERROR: "ui4",
            _abi.VT_R4: "r4", _abi.VT_R8: "r8"}
INTEGERS = {_abi.VT_I1, _abi.VT_UI1, _abi.VT_I2, _abi.VT_UI2, _abi.VT_I4, _abi.VT_UI4, _abi.VT_I8,
            _abi.VT_UI8, _abi.VT_INT, _abi.VT_UINT, _abi.VT_INT_PTR, _abi.VT_UINT_PTR}


class Ref:
    """A place that a method reads and writes, such as the position of a walk.

    position = Ref(collection.GetHeadPosition())
    first = collection.GetNext(position)      # position.value is that of the second now
    """

    __slots__ = ("value",)

    def __init__(self, value=None):
        self.value = value

    def __repr__(self):
        return f"Ref({self.value!r})"


def _integer(value):
    for vt, field, lowest, limit in ((_abi.VT_I4, "i4", -2**31, 2**31),
                                     (_abi.VT_I8, "i8", -2**63, 2**63),
                                     (_abi.VT_UI8, "ui8", 0, 2**64)):
        if lowest <= value < limit:
            return vt, field
    raise OverflowError(f"{value} has more than 64 bits")


def _array_of_texts(texts):
    array = runtime().SafeArrayCreateVector(_abi.VT_BSTR, 0, len(texts))
    if not array:
        raise MemoryError
    try:
        for index, text in enumerate(texts):
            string = runtime().text_in(text)
            code = runtime().SafeArrayPutElement(array, byref(c_int32(index)), string)
            runtime().SysFreeString(string)  # the array holds a copy
            runtime().check(code, "filling an array")
    except BaseException:
        runtime().SafeArrayDestroy(array)
        raise
    return array


def store(variant, value, object_expected=False):
    """Puts a value into an empty variant, which then owns it."""
    reference = getattr(value, "_reference", None)
    if isinstance(value, os.PathLike):
        value = os.fspath(value)
    if reference is not None:
        pointer = reference.get()
        _abi.add_ref(pointer)
        variant.vt, variant.pointer = _abi.VT_DISPATCH, pointer
    elif value is None:
        variant.vt, variant.pointer = _abi.VT_DISPATCH if object_expected else _abi.VT_EMPTY, None
    elif isinstance(value, bool):
        variant.vt, variant.i2 = _abi.VT_BOOL, -value
    elif isinstance(value, int):
        variant.vt, field = _integer(value)
        setattr(variant, field, value)
    elif isinstance(value, float):
        variant.vt, variant.r8 = _abi.VT_R8, value
    elif isinstance(value, str):
        variant.pointer = runtime().text_in(value)
        variant.vt = _abi.VT_BSTR
    elif isinstance(value, (list, tuple)) and all(isinstance(text, str) for text in value):
        variant.pointer = _array_of_texts(value)
        variant.vt = _abi.VT_ARRAY | _abi.VT_BSTR
    else:
        raise TypeError(f"a value of type {type(value).__name__} cannot be handed over")


def _elements(array, wrap):
    if runtime().SafeArrayGetDim(array) != 1:
        raise TypeError("only arrays of one dimension are understood")
    first, last, vt = c_int32(), c_int32(), c_uint16()
    runtime().check(runtime().SafeArrayGetLBound(array, 1, byref(first)), "reading an array")
    runtime().check(runtime().SafeArrayGetUBound(array, 1, byref(last)), "reading an array")
    runtime().check(runtime().SafeArrayGetVartype(array, byref(vt)), "reading an array")
    for index in range(first.value, last.value + 1):
        place = c_void_p()
        code = runtime().SafeArrayPtrOfIndex(array, byref(c_int32(index)), byref(place))
        runtime().check(code, "reading an array")
        element = VARIANT(vt=vt.value | _abi.VT_BYREF)
        element.pointer = place.value
        yield load(element, wrap)


def load(variant, wrap):
    """The value of a variant, which keeps what it owns; wrap makes an object of a reference."""
    if variant.vt & _abi.VT_BYREF:
        copy = VARIANT()
        runtime().check(runtime().VariantCopyInd(byref(copy), byref(variant)), "reading a value")
        return taken(copy, wrap)
    if variant.vt in (_abi.VT_EMPTY, _abi.VT_NULL):
        return None
    if variant.vt in _NUMBERS:
        return getattr(variant, _NUMBERS[variant.vt])
    if variant.vt == _abi.VT_BOOL:
        return variant.i2 != 0
    if variant.vt == _abi.VT_BSTR:
        return runtime().text_out(variant.pointer)
    if variant.vt in (_abi.VT_DISPATCH, _abi.VT_UNKNOWN):
        if not variant.pointer:
            return None
        _abi.add_ref(variant.pointer)
        return wrap(Reference(variant.pointer))
    if variant.vt & _abi.VT_ARRAY:
        return list(_elements(variant.pointer, wrap))
    raise TypeError(f"values of the automation type {variant.vt} are not understood")


def taken(variant, wrap):
    """The value of a variant, which is empty afterwards."""
    try:
        return load(variant, wrap)
    finally:
        runtime().VariantClear(byref(variant))


class Arguments:
    """The arguments of a call, as Invoke takes them; frees them again."""

    def __init__(self, values, parameters, is_put):
        self._refs = []
        count = len(values)
        self._variants = (VARIANT * max(count, 1))()
        self._put = c_int32(_abi.DISPID_PROPERTYPUT)
        self.parameters = _abi.DISPPARAMS(
            arguments=self._variants, count=count,
            named=ctypes.pointer(self._put) if is_put else None, named_count=int(is_put))
        try:
            for index, value in enumerate(values):
                parameter = parameters[index] if index < len(parameters) else None
                variant = self._variants[count - 1 - index]
                if isinstance(value, Ref):
                    place = VARIANT()
                    self._refs.append((value, place, parameter))
                    store(place, value.value)
                    variant.vt = _abi.VT_BYREF | _abi.VT_VARIANT
                    variant.pointer = ctypes.addressof(place)
                else:
                    store(variant, value, parameter is not None and parameter.is_object)
        except BaseException:
            self.free()
            raise

    def take_references(self, wrap):
        """Gives every Ref its new value."""
        for ref, place, parameter in self._refs:
            value = load(place, wrap)
            ref.value = parameter.exact(value) if parameter else value

    def free(self):
        # A variant that refers to another does not own it.
        for variant in self._variants:
            runtime().VariantClear(byref(variant))
        for _, place, _ in self._refs:
            runtime().VariantClear(byref(place))
