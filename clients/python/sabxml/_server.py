"""Finds the component server and makes objects of its classes."""

from ctypes import byref, c_uint32, c_void_p

from . import _abi
from ._abi import GUID
from ._errors import Error
from ._runtime import (SERVER_NAME, Reference, enter_thread, load_library, load_nearby,
                       no_library, runtime)
from ._type_info import find_type, guid_of, type_library_of, type_names

PROG_ID_PREFIX = "SabXmlParser."
# A class that every server has; its type information leads to all others.
_VE_APP_PARSER = GUID.of("A72B61B7-870B-4BE9-BFC1-CA07CBEA8EDB")


class Server:
    """A library of the server; without a path, the registered one or else one nearby."""

    def __init__(self, path=None):
        self._path = path
        self._classes = {}  # identifiers by the names that were asked for; None for unknown ones
        self._get_class_object = None
        if path:
            self._load()  # its runtime is the one to use
        enter_thread()

    def instance(self, name):
        """A reference to a new object of a class: its name, its ProgID or its identifier."""
        runtime().SetErrorInfo(0, None)
        return self._instance(self._class_id(name))

    def classes(self):
        """The names of the classes."""
        return list(type_names(self._type_library(), _abi.TKIND_COCLASS))

    def interfaces(self):
        """The names of the interfaces."""
        return list(type_names(self._type_library(), _abi.TKIND_DISPATCH))

    def interface(self, name):
        """The type information of an interface, or None."""
        return find_type(self._type_library(), name, _abi.TKIND_DISPATCH)

    def _type_library(self):
        return type_library_of(self._instance(_VE_APP_PARSER))

    def _class_id(self, name):
        if not isinstance(name, str):
            raise TypeError(f"a class is named by a str, not by a {type(name).__name__}")
        if name.startswith("{"):
            try:
                return GUID.of(name)
            except ValueError:
                raise Error(_abi.CO_E_CLASSSTRING, f"{name} is no class identifier") from None
        if not name.startswith(PROG_ID_PREFIX):
            name = PROG_ID_PREFIX + name
        clsid = GUID()
        if not self._path:
            text = name.encode("utf-16-le", "surrogatepass") + b"\0"
            if runtime().CLSIDFromProgID(text, byref(clsid)) == 0:
                return clsid
        # Not registered, or a class without a ProgID.
        name = name[len(PROG_ID_PREFIX):]
        name = name[:-2] if name.endswith(".1") else name
        if name not in self._classes:
            info = find_type(self._type_library(), name, _abi.TKIND_COCLASS)
            self._classes[name] = info and guid_of(info)
        if self._classes[name]:
            return self._classes[name]
        raise Error(_abi.CO_E_CLASSSTRING, f"the server has no class named {name}")

    def _instance(self, clsid):
        pointer = c_void_p()
        if not self._path:
            code = runtime().CoCreateInstance(byref(clsid), None, _abi.CLSCTX_INPROC_SERVER,
                                              byref(_abi.IID_IDispatch), byref(pointer))
            if code == 0:
                return Reference(pointer.value)
            if code != _abi.REGDB_E_CLASSNOTREG:
                raise runtime().error(code, "the registered server cannot be used")
        if self._get_class_object is None:
            self._load()
        code = self._get_class_object(byref(clsid), byref(_abi.IID_IClassFactory), byref(pointer))
        if code:
            runtime().check(code, f"the server has no class {clsid}")
        factory = Reference(pointer.value)
        code = _abi.ClassFactory.create_instance(factory.get(), None, byref(_abi.IID_IDispatch),
                                                 byref(pointer))
        if code:
            runtime().check(code, f"creating an object of the class {clsid}")
        return Reference(pointer.value)

    def _load(self):
        try:
            library = load_library(self._path) if self._path else load_nearby([SERVER_NAME])
            function = library.DllGetClassObject
        except (OSError, AttributeError) as error:
            raise no_library(error) from None
        runtime(library)
        function.argtypes = [c_void_p, c_void_p, c_void_p]
        function.restype = c_uint32
        self._get_class_object = function
