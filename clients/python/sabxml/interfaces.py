"""The classes of the server's interfaces, by their names: from sabxml.interfaces import IVeAppParser.

They document their members (help(IVeAppParser)), serve isinstance(), and are what annotations name;
type checkers read interfaces.pyi. An object comes from sabxml.create() or from another object.
"""

from . import _server_at
from ._object import interface_class


def __getattr__(name):
    info = None if name.startswith("__") else _server_at().interface(name)
    if info is None:
        raise AttributeError(f"the server has no interface named {name}")
    known = globals()[name] = interface_class(info)
    return known


def __dir__():
    return sorted(_server_at().interfaces())
