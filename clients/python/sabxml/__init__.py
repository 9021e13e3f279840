"""The SabXmlParser component server for Python.

    import sabxml
    app = sabxml.create("VeAppParser")
    app.ConfigurationPath = "application.xml"
    app.GenerateApp()
    print(app.GetProductName())

See the README beside this package.
"""

import os

from ._errors import Error, MemberError
from ._object import Object
from ._server import Server
from ._variant import Ref

__all__ = ["Error", "MemberError", "Object", "Ref", "classes", "create"]

_servers = {}


def create(name, library=None):
    """A new object of a class: "VeAppParser", "SabXmlParser.VeAppParser", or an identifier in {}.

    library is the server's file. Without it the environment variable SABXML_SERVER names it; without
    both, the registered server is used, or else one beside this package or where the system looks.
    """
    return Object(_server(library).instance(name))


def classes(library=None):
    """The names of all classes of the server."""
    return sorted(_server(library).classes())


def _server(library):
    path = os.path.abspath(library) if library else os.environ.get("SABXML_SERVER", "")
    if path not in _servers:
        _servers[path] = Server(path)
    return _servers[path]
