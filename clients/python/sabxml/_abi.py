"""Structures, constants and interface slots of the automation interfaces, as ctypes sees them.

The layouts are the platform's own on Windows and those of <sabxml/com.h> elsewhere; both agree.
"""

import ctypes
import uuid
from ctypes import POINTER, c_double, c_int, c_int16, c_int32, c_int64, c_uint, c_uint16, c_uint32
from ctypes import c_uint64, c_ubyte, c_void_p

# Interfaces are called with the platform's own convention, which 32-bit Windows tells apart.
FunctionType = getattr(ctypes, "WINFUNCTYPE", ctypes.CFUNCTYPE)
POINTER_SIZE = ctypes.sizeof(c_void_p)

VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8 = range(6)
VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL, VT_VARIANT, VT_UNKNOWN = range(8, 14)
VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT = range(16, 24)
VT_PTR, VT_INT_PTR, VT_UINT_PTR = 26, 37, 38
VT_ARRAY, VT_BYREF = 0x2000, 0x4000

DISPID_PROPERTYPUT, DISPID_NEWENUM = -3, -4
DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT = 1, 2, 4
PARAMFLAG_FOUT, PARAMFLAG_FRETVAL, PARAMFLAG_FIN = 2, 8, 1
TKIND_COCLASS = 5
CLSCTX_INPROC_SERVER = 1
LOCALE_USER_DEFAULT = 0x0400

# Results as Python shows them: without a sign.
E_NOINTERFACE = 0x80004002
E_OUTOFMEMORY = 0x8007000E
RPC_E_WRONG_THREAD = 0x8001010E
RPC_E_CHANGED_MODE = 0x80010106
REGDB_E_CLASSNOTREG = 0x80040154
CO_E_CLASSSTRING = 0x800401F3
CO_E_DLLNOTFOUND = 0x800401F8
DISP_E_MEMBERNOTFOUND = 0x80020003
DISP_E_UNKNOWNNAME = 0x80020006
DISP_E_EXCEPTION = 0x80020009
DISP_E_BADPARAMCOUNT = 0x8002000E


class GUID(ctypes.Structure):
    _fields_ = [("bytes", c_ubyte * 16)]

    @classmethod
    def of(cls, text):
        return cls.from_buffer_copy(uuid.UUID(text).bytes_le)

    def __str__(self):
        return "{%s}" % str(uuid.UUID(bytes_le=bytes(self.bytes))).upper()


IID_NULL = GUID()
IID_IUnknown = GUID.of("00000000-0000-0000-C000-000000000046")
IID_IClassFactory = GUID.of("00000001-0000-0000-C000-000000000046")
IID_IDispatch = GUID.of("00020400-0000-0000-C000-000000000046")
IID_IEnumVARIANT = GUID.of("00020404-0000-0000-C000-000000000046")


class _Record(ctypes.Structure):  # as wide as the widest value
    _fields_ = [("data", c_void_p), ("info", c_void_p)]


class _Value(ctypes.Union):
    _fields_ = [("i1", ctypes.c_int8), ("ui1", c_ubyte), ("i2", c_int16), ("ui2", c_uint16),
                ("i4", c_int32), ("ui4", c_uint32), ("i8", c_int64), ("ui8", c_uint64),
                ("r4", ctypes.c_float), ("r8", c_double), ("pointer", c_void_p),
                ("record", _Record)]


class VARIANT(ctypes.Structure):
    _anonymous_ = ("value",)
    _fields_ = [("vt", c_uint16), ("reserved", c_uint16 * 3), ("value", _Value)]


class DISPPARAMS(ctypes.Structure):
    _fields_ = [("arguments", POINTER(VARIANT)), ("named", POINTER(c_int32)),
                ("count", c_uint), ("named_count", c_uint)]


class EXCEPINFO(ctypes.Structure):
    _fields_ = [("wCode", c_uint16), ("reserved", c_uint16), ("source", c_void_p),
                ("description", c_void_p), ("help_file", c_void_p), ("help_context", c_uint32),
                ("reserved_pointer", c_void_p), ("fill_in", c_void_p), ("scode", c_int32)]


class TYPEDESC(ctypes.Structure):
    _fields_ = [("inner", c_void_p), ("vt", c_uint16)]


class ELEMDESC(ctypes.Structure):
    _fields_ = [("type", TYPEDESC), ("default", c_void_p), ("flags", c_uint16)]


class FUNCDESC(ctypes.Structure):
    _fields_ = [("memid", c_int32), ("scodes", c_void_p), ("parameters", POINTER(ELEMDESC)),
                ("funckind", c_int), ("invkind", c_int), ("callconv", c_int),
                ("parameter_count", c_int16), ("optional_count", c_int16), ("slot", c_int16),
                ("scode_count", c_int16), ("result", ELEMDESC), ("flags", c_uint16)]


class TYPEATTR(ctypes.Structure):
    _fields_ = [("guid", GUID), ("lcid", c_uint32), ("reserved", c_uint32),
                ("constructor", c_int32), ("destructor", c_int32), ("schema", c_void_p),
                ("instance_size", c_uint32), ("kind", c_int), ("function_count", c_uint16),
                ("variable_count", c_uint16), ("implemented_count", c_uint16)]
    # More follows, which nothing here reads.


def slot(index, *types, result=c_int32):
    """The method in a slot of an interface: a function of its pointer and arguments."""
    prototype = FunctionType(result, c_void_p, *types)

    # An object may be released when the names of this module are gone.
    def call(pointer, *arguments, place=c_void_p.from_address, offset=index * POINTER_SIZE):
        return prototype(place(place(pointer).value + offset).value)(pointer, *arguments)

    return call


_out = POINTER(c_void_p)
_guid = POINTER(GUID)

query_interface = slot(0, _guid, _out)
add_ref = slot(1, result=c_uint32)
release = slot(2, result=c_uint32)


class ClassFactory:
    create_instance = staticmethod(slot(3, c_void_p, _guid, _out))


class Dispatch:
    get_type_info = staticmethod(slot(4, c_uint, c_uint32, _out))
    get_ids_of_names = staticmethod(slot(5, _guid, _out, c_uint, c_uint32, POINTER(c_int32)))
    invoke = staticmethod(slot(6, c_int32, _guid, c_uint32, c_uint16, POINTER(DISPPARAMS),
                               POINTER(VARIANT), POINTER(EXCEPINFO), POINTER(c_uint)))


class EnumVariant:
    next = staticmethod(slot(3, c_uint32, POINTER(VARIANT), POINTER(c_uint32)))


class ErrorInfo:
    get_source = staticmethod(slot(4, _out))
    get_description = staticmethod(slot(5, _out))


class TypeInfo:
    get_type_attr = staticmethod(slot(3, POINTER(POINTER(TYPEATTR))))
    get_func_desc = staticmethod(slot(5, c_uint, POINTER(POINTER(FUNCDESC))))
    get_documentation = staticmethod(slot(12, c_int32, _out, _out, POINTER(c_uint32), _out))
    get_containing_type_lib = staticmethod(slot(18, _out, POINTER(c_uint)))
    release_type_attr = staticmethod(slot(19, POINTER(TYPEATTR), result=None))
    release_func_desc = staticmethod(slot(20, POINTER(FUNCDESC), result=None))


class TypeLib:
    get_type_info_count = staticmethod(slot(3, result=c_uint))
    get_type_info = staticmethod(slot(4, c_uint, _out))
    get_type_info_type = staticmethod(slot(5, c_uint, POINTER(c_int)))
