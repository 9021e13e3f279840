"""The component runtime of the process, and the memory and errors that it keeps."""

import ctypes
import os
import sys
from _thread import _local, allocate_lock  # threading takes a fifth of the time of an import
from ctypes import byref, c_int32, c_uint, c_uint16, c_uint32, c_void_p, string_at

from . import _abi
from ._errors import Error

ON_WINDOWS = sys.platform == "win32"
SERVER_NAME = "SabXmlParser.dll" if ON_WINDOWS else "libSabXmlParser.so"
_RUNTIME_NAMES = ["ole32", "oleaut32"] if ON_WINDOWS else ["libsabcom.so.0", "libsabcom.so"]
_HERE = os.path.dirname(os.path.abspath(__file__))

# A result without a sign needs no conversion before it is compared.
_FUNCTIONS = {
    "CoInitialize": ([c_void_p], c_uint32),
    "CLSIDFromProgID": ([c_void_p, c_void_p], c_uint32),
    "CoCreateInstance": ([c_void_p, c_void_p, c_uint32, c_void_p, c_void_p], c_uint32),
    "SysAllocStringLen": ([c_void_p, c_uint], c_void_p),
    "SysFreeString": ([c_void_p], None),
    "GetErrorInfo": ([c_uint32, c_void_p], c_uint32),
    "SetErrorInfo": ([c_uint32, c_void_p], c_uint32),
    "VariantClear": ([c_void_p], c_uint32),
    "VariantCopyInd": ([c_void_p, c_void_p], c_uint32),
    "SafeArrayCreateVector": ([c_uint16, c_int32, c_uint32], c_void_p),
    "SafeArrayDestroy": ([c_void_p], c_uint32),
    "SafeArrayGetVartype": ([c_void_p, c_void_p], c_uint32),
    "SafeArrayGetDim": ([c_void_p], c_uint),
    "SafeArrayGetLBound": ([c_void_p, c_uint, c_void_p], c_uint32),
    "SafeArrayGetUBound": ([c_void_p, c_uint, c_void_p], c_uint32),
    "SafeArrayPtrOfIndex": ([c_void_p, c_void_p, c_void_p], c_uint32),
    "SafeArrayPutElement": ([c_void_p, c_void_p, c_void_p], c_uint32),
}


def load_library(name):
    return ctypes.WinDLL(name) if ON_WINDOWS else ctypes.CDLL(name)


def no_library(reason):
    return Error(_abi.CO_E_DLLNOTFOUND,
                 f"the component server cannot be loaded: {reason}. Name its file in SABXML_SERVER "
                 "or as library=, or install it where the system looks for libraries")


def load_nearby(names):
    """The first library of these names that is beside this package or that the system finds."""
    reasons = []
    for name in names:
        for path in (os.path.join(_HERE, name), name):
            if path != name and not os.path.exists(path):
                continue
            try:
                return load_library(path)
            except OSError as error:
                reasons.append(str(error))
    raise no_library("; ".join(reasons))


class Runtime:
    """The functions of the runtime, by their own names."""

    def __init__(self, libraries):
        for name, (arguments, result) in _FUNCTIONS.items():
            function = next(filter(None, (getattr(library, name, None) for library in libraries)))
            function.argtypes, function.restype = arguments, result
            setattr(self, name, function)

    def text_in(self, text):
        """A new automation string, which the caller frees."""
        units = text.encode("utf-16-le", "surrogatepass")
        string = self.SysAllocStringLen(units, len(units) // 2)
        if not string:
            raise MemoryError
        return string

    @staticmethod
    def text_out(string):
        """The text of an automation string, which stays the caller's."""
        if not string:
            return ""
        size = c_uint32.from_address(string - 4).value  # bytes, as every automation string has it
        return string_at(string, size).decode("utf-16-le", "surrogatepass")

    def taken_text(self, string):
        """The text of an automation string, which is freed."""
        text = self.text_out(string)
        self.SysFreeString(string)
        return text

    def error(self, code, fallback, kind=Error):
        """The exception for a result, with what the thread's error object says of it."""
        info = c_void_p()
        description = source = ""
        if self.GetErrorInfo(0, byref(info)) == 0:
            texts = []
            for get in (_abi.ErrorInfo.get_description, _abi.ErrorInfo.get_source):
                string = c_void_p()
                get(info.value, byref(string))
                texts.append(self.taken_text(string.value))
            _abi.release(info.value)
            description, source = texts
        return kind(code, description or fallback, source)

    def check(self, code, action):
        if code & 0x80000000:
            raise self.error(code & 0xFFFFFFFF, action)


_lock = allocate_lock()
_runtime = None
_threads = _local()


def runtime(server=None):
    """The runtime, which is loaded at the first use.

    server is a library of the component server, where one is loaded already: the runtime that it
    is linked with must be the one that is used, however many others are installed.
    """
    global _runtime
    if _runtime is not None:
        return _runtime
    with _lock:
        if _runtime is None:
            if ON_WINDOWS:
                libraries = [load_library(name) for name in _RUNTIME_NAMES]
            else:
                libraries = [server or load_nearby(_RUNTIME_NAMES)]
            _runtime = Runtime(libraries)
        return _runtime


def enter_thread():
    """Enters the runtime on this thread, once; it is left with the process."""
    left_over = getattr(_threads, "left_over", None)
    if left_over is None:
        code = runtime().CoInitialize(None)
        if code != _abi.RPC_E_CHANGED_MODE:  # others have entered it in their own way
            runtime().check(code, "entering the component runtime")
        left_over = _threads.left_over = LeftOver()
    if left_over.pointers:
        left_over.release()
    return left_over


class LeftOver:
    """Pointers of a thread's objects that Python has dropped on another thread.

    An object may be released only where it was made, and Python collects garbage anywhere.
    """

    def __init__(self):
        self.pointers = []

    def release(self):
        while self.pointers:
            _abi.release(self.pointers.pop())


# The system gives the number of a thread that has ended to another one.
def _is_of_this_thread(left_over, threads=_threads):
    return getattr(threads, "left_over", None) is left_over


class Reference:
    """Owns one reference to an object. It belongs to the thread that made it."""

    __slots__ = ("pointer", "_left_over")

    def __init__(self, pointer):
        self.pointer = pointer
        self._left_over = enter_thread()

    def get(self):
        if getattr(_threads, "left_over", None) is not self._left_over:
            raise Error(_abi.RPC_E_WRONG_THREAD, "an object is used by the thread that made it")
        return self.pointer

    def query(self, iid):
        """A reference to another interface of the object, or None."""
        other = c_void_p()
        _abi.query_interface(self.get(), byref(iid), byref(other))
        return Reference(other.value) if other.value else None

    def __reduce_ex__(self, protocol):
        raise TypeError("a reference to a component object can be neither copied nor pickled")

    # When the interpreter ends, modules may be gone before objects are.
    def __del__(self, release=_abi.release, is_of_this_thread=_is_of_this_thread):
        left_over = getattr(self, "_left_over", None)
        if left_over is None:
            return
        if is_of_this_thread(left_over):
            release(self.pointer)
        else:
            left_over.pointers.append(self.pointer)
