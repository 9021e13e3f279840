"""Structures, constants and interface slots of the automation interfaces, as ctypes sees them.

The layouts are the platform's own on Windows and those of <sabxml/com.h> elsewhere; both agree.
"""

import ctypes
from ctypes import c_int, c_int16, c_int32, c_uint, c_uint16, c_uint32, c_ubyte, c_void_p

# Interfaces are called with the platform's own convention, which matters on 32-bit Windows.
FunctionType = getattr(ctypes, "WINFUNCTYPE", ctypes.CFUNCTYPE)
POINTER_SIZE = ctypes.sizeof(c_void_p)

VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8 = range(6)
VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL, VT_VARIANT, VT_UNKNOWN = range(8, 14)
VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT = range(16, 24)
VT_PTR, VT_INT_PTR, VT_UINT_PTR = 26, 37, 38
VT_VOID, VT_ARRAY, VT_BYREF = 24, 0x2000, 0x4000

DISPID_PROPERTYPUT, DISPID_NEWENUM = -3, -4
DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT = 1, 2, 4
PARAMFLAG_FIN, PARAMFLAG_FOUT, PARAMFLAG_FOPT = 1, 2, 0x10
TKIND_DISPATCH, TKIND_COCLASS = 4, 5
CLSCTX_INPROC_SERVER = 1
LOCALE_USER_DEFAULT = 0x0400

# Results as Python shows them: without a sign.
E_NOTIMPL = 0x80004001
E_NOINTERFACE = 0x80004002
E_FAIL = 0x80004005
E_FILENOTFOUND = 0x80070002
E_OUTOFMEMORY = 0x8007000E
E_INVALIDARG = 0x80070057
RPC_E_WRONG_THREAD = 0x8001010E
RPC_E_CHANGED_MODE = 0x80010106
REGDB_E_CLASSNOTREG = 0x80040154
CO_E_CLASSSTRING = 0x800401F3
CO_E_DLLNOTFOUND = 0x800401F8
DISP_E_MEMBERNOTFOUND = 0x80020003
DISP_E_PARAMNOTFOUND = 0x80020004
DISP_E_UNKNOWNNAME = 0x80020006
DISP_E_EXCEPTION = 0x80020009
DISP_E_BADPARAMCOUNT = 0x8002000E


class GUID(ctypes.Structure):
    _fields_ = [("bytes", c_ubyte * 16)]

    @classmethod
    def of(cls, text):
        """The identifier that a text of 32 digits names, with hyphens or without, maybe in braces."""
        digits = bytes.fromhex(text.strip("{}").replace("-", ""))
        if len(digits) != 16:
            raise ValueError(text)
        return cls.from_buffer_copy(digits[3::-1] + digits[5:3:-1] + digits[7:5:-1] + digits[8:])

    def __str__(self):
        data = bytes(self.bytes)
        digits = (data[3::-1] + data[5:3:-1] + data[7:5:-1] + data[8:]).hex().upper()
        return f"{{{digits[:8]}-{digits[8:12]}-{digits[12:16]}-{digits[16:20]}-{digits[20:]}}}"


IID_NULL = GUID()
IID_IUnknown = GUID.of("00000000-0000-0000-C000-000000000046")
IID_IClassFactory = GUID.of("00000001-0000-0000-C000-000000000046")
IID_IDispatch = GUID.of("00020400-0000-0000-C000-000000000046")
IID_IEnumVARIANT = GUID.of("00020404-0000-0000-C000-000000000046")


class _Record(ctypes.Structure):  # as wide as the widest value
    _fields_ = [("data", c_void_p), ("info", c_void_p)]


class _Value(ctypes.Union):
    _fields_ = [("i1", ctypes.c_int8), ("ui1", c_ubyte), ("i2", c_int16), ("ui2", c_uint16),
                ("i4", c_int32), ("ui4", c_uint32), ("i8", ctypes.c_int64),
                ("ui8", ctypes.c_uint64), ("r4", ctypes.c_float), ("r8", ctypes.c_double),
                ("pointer", c_void_p), ("record", _Record)]


class VARIANT(ctypes.Structure):
    _anonymous_ = ("value",)
    _fields_ = [("vt", c_uint16), ("reserved", c_uint16 * 3), ("value", _Value)]


# Pointers are addresses here, since every type of a pointer is a class to be made at each start.
class DISPPARAMS(ctypes.Structure):
    _fields_ = [("arguments", c_void_p), ("named", c_void_p), ("count", c_uint),
                ("named_count", c_uint)]


class EXCEPINFO(ctypes.Structure):
    _fields_ = [("wCode", c_uint16), ("reserved", c_uint16), ("source", c_void_p),
                ("description", c_void_p), ("help_file", c_void_p), ("help_context", c_uint32),
                ("reserved_pointer", c_void_p), ("fill_in", c_void_p), ("scode", c_int32)]


class TYPEDESC(ctypes.Structure):
    _fields_ = [("inner", c_void_p), ("vt", c_uint16)]


class ELEMDESC(ctypes.Structure):
    _fields_ = [("type", TYPEDESC), ("default", c_void_p), ("flags", c_uint16)]


class FUNCDESC(ctypes.Structure):
    _fields_ = [("memid", c_int32), ("scodes", c_void_p), ("parameters", c_void_p),
                ("funckind", c_int), ("invkind", c_int), ("callconv", c_int),
                ("parameter_count", c_int16), ("optional_count", c_int16), ("slot", c_int16),
                ("scode_count", c_int16), ("result", ELEMDESC), ("flags", c_uint16)]


class TYPEATTR(ctypes.Structure):
    _fields_ = [("guid", GUID), ("lcid", c_uint32), ("reserved", c_uint32),
                ("constructor", c_int32), ("destructor", c_int32), ("schema", c_void_p),
                ("instance_size", c_uint32), ("kind", c_int), ("function_count", c_uint16),
                ("variable_count", c_uint16), ("implemented_count", c_uint16)]
    # More follows, which nothing here reads.


class Slot:
    """The method in a slot of an interface; called with the interface's pointer and arguments."""

    def __init__(self, index, *types, result=c_int32):
        self._offset = index * POINTER_SIZE
        self._prototype = FunctionType(result, c_void_p, *types)
        self._functions = {}  # by their addresses

    # An object may be released when the names of this module are gone.
    def of(self, pointer, place=c_void_p.from_address):
        """The method of the object at a pointer, as a function of pointer and arguments."""
        address = place(place(pointer).value + self._offset).value
        function = self._functions.get(address)
        if function is None:
            function = self._functions[address] = self._prototype(address)
        return function

    def __call__(self, pointer, *arguments):
        return self.of(pointer)(pointer, *arguments)


query_interface = Slot(0, c_void_p, c_void_p)
add_ref = Slot(1, result=c_uint32)
release = Slot(2, result=c_uint32)


class ClassFactory:
    create_instance = Slot(3, c_void_p, c_void_p, c_void_p)


class Dispatch:
    get_type_info = Slot(4, c_uint, c_uint32, c_void_p)
    get_ids_of_names = Slot(5, c_void_p, c_void_p, c_uint, c_uint32, c_void_p)
    invoke = Slot(6, c_int32, c_void_p, c_uint32, c_uint16, c_void_p, c_void_p, c_void_p, c_void_p)


class EnumVariant:
    next = Slot(3, c_uint32, c_void_p, c_void_p)


class ErrorInfo:
    get_source = Slot(4, c_void_p)
    get_description = Slot(5, c_void_p)


class TypeInfo:
    get_type_attr = Slot(3, c_void_p)
    get_func_desc = Slot(5, c_uint, c_void_p)
    get_names = Slot(7, c_int32, c_void_p, c_uint, c_void_p)
    get_documentation = Slot(12, c_int32, c_void_p, c_void_p, c_void_p, c_void_p)
    get_containing_type_lib = Slot(18, c_void_p, c_void_p)
    release_type_attr = Slot(19, c_void_p, result=None)
    release_func_desc = Slot(20, c_void_p, result=None)


class TypeLib:
    get_type_info_count = Slot(3, result=c_uint)
    get_type_info = Slot(4, c_uint, c_void_p)
    get_type_info_type = Slot(5, c_uint, c_void_p)
    find_name = Slot(11, c_void_p, c_uint32, c_void_p, c_void_p, c_void_p)
