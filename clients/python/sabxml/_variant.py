"""Values of automation as Python's, and back."""

from ctypes import addressof, byref, c_int32, c_uint16, c_void_p
from os import PathLike, fspath

from . import _abi
from ._abi import VARIANT
from ._runtime import Reference, runtime

# Where a value of a type lies in the variant, for types that own nothing.
_NUMBERS = {_abi.VT_I1: "i1", _abi.VT_UI1: "ui1", _abi.VT_I2: "i2", _abi.VT_UI2: "ui2",
            _abi.VT_I4: "i4", _abi.VT_UI4: "ui4", _abi.VT_I8: "i8", _abi.VT_UI8: "ui8",
            _abi.VT_INT: "i4", _abi.VT_UINT: "ui4", _abi.VT_ERROR: "ui4",
            _abi.VT_R4: "r4", _abi.VT_R8: "r8"}
_OBJECTS = {_abi.VT_DISPATCH, _abi.VT_UNKNOWN}
_PLAIN = {*_NUMBERS, _abi.VT_EMPTY, _abi.VT_NULL, _abi.VT_BOOL}
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


class Missing:
    """An optional argument that is left out before one that is given."""


def _put_integer(variant, value):
    if -2**31 <= value < 2**31:
        variant.vt, variant.i4 = _abi.VT_I4, value
    elif -2**63 <= value < 2**63:
        variant.vt, variant.i8 = _abi.VT_I8, value
    elif 0 <= value < 2**64:
        variant.vt, variant.ui8 = _abi.VT_UI8, value
    else:
        raise OverflowError(f"{value} has more than 64 bits")


def _put_text(variant, value):
    variant.pointer = runtime().text_in(value)
    variant.vt = _abi.VT_BSTR


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
    if isinstance(value, bool):
        variant.vt, variant.i2 = _abi.VT_BOOL, -value
    elif isinstance(value, int):
        _put_integer(variant, value)
    elif isinstance(value, str):
        _put_text(variant, value)
    elif isinstance(value, float):
        variant.vt, variant.r8 = _abi.VT_R8, value
    elif value is None:
        variant.vt, variant.pointer = _abi.VT_DISPATCH if object_expected else _abi.VT_EMPTY, None
    elif (reference := getattr(value, "_reference", None)) is not None:
        pointer = reference.get()
        _abi.add_ref(pointer)
        variant.vt, variant.pointer = _abi.VT_DISPATCH, pointer
    elif value is Missing:
        variant.vt, variant.ui4 = _abi.VT_ERROR, _abi.DISP_E_PARAMNOTFOUND
    elif isinstance(value, (list, tuple)) and all(isinstance(text, str) for text in value):
        variant.pointer = _array_of_texts(value)
        variant.vt = _abi.VT_ARRAY | _abi.VT_BSTR
    elif isinstance(value, PathLike) and isinstance(fspath(value), str):
        _put_text(variant, fspath(value))
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
    """The value of a variant, which keeps what it owns; wrap makes an object of a reference and its type."""
    vt = variant.vt
    if vt in _NUMBERS:
        return getattr(variant, _NUMBERS[vt])
    if vt == _abi.VT_BSTR:
        return runtime().text_out(variant.pointer)
    if vt == _abi.VT_BOOL:
        return variant.i2 != 0
    if vt in (_abi.VT_EMPTY, _abi.VT_NULL):
        return None
    if vt in _OBJECTS:
        if not variant.pointer:
            return None
        _abi.add_ref(variant.pointer)
        return wrap(Reference(variant.pointer), vt)
    if vt & _abi.VT_BYREF:
        copy = VARIANT()
        runtime().check(runtime().VariantCopyInd(byref(copy), byref(variant)), "reading a value")
        return taken(copy, wrap)
    if vt & _abi.VT_ARRAY:
        return list(_elements(variant.pointer, wrap))
    raise TypeError(f"values of the automation type {vt} are not understood")


def clear(variant):
    """Frees what a variant owns; it is empty afterwards."""
    if variant.vt in _PLAIN:
        variant.vt = _abi.VT_EMPTY
    else:
        runtime().VariantClear(byref(variant))


def taken(variant, wrap):
    """The value of a variant, which is empty afterwards."""
    vt = variant.vt
    if vt in _OBJECTS and variant.pointer:
        reference = Reference(variant.pointer)  # the variant's own, which saves counting
        variant.vt = _abi.VT_EMPTY
        return wrap(reference, vt)
    try:
        return load(variant, wrap)
    finally:
        clear(variant)


def refer(variant, place):
    """Makes an empty variant refer to another, which it does not own."""
    variant.vt = _abi.VT_BYREF | _abi.VT_VARIANT
    variant.pointer = addressof(place)
