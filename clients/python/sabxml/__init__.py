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
from ._object import Collection, Object, object_of
from ._server import Server
from ._variant import Ref

__all__ = ["Collection", "Error", "MemberError", "Object", "Ref", "classes", "create", "settings"]
__version__ = "1.0.0"

_servers = {}


def create(name, library=None):
    """A new object of a class: "VeAppParser", "SabXmlParser.VeAppParser", or an identifier in {}.

    library is the server's file. Without it the environment variable SABXML_SERVER names it; without
    both, the registered server is used, or else one beside this package or where the system looks.
    """
    return object_of(_server_at(library).instance(name))


def classes(library=None):
    """The names of all classes of the server."""
    return sorted(_server_at(library).classes())


def settings(name, file, node, save_to=None, library=None):
    """A context with a settings group, which is loaded on entry; what has changed is saved if the
    block succeeds.

        with settings("VeDisplayCfgParser", "settings.xml", "/Settings/Display") as display:
            display.CursorSize = 9

    name and library are those of create(). file must exist, and node must lead to an element: the one
    whose children are the keys. save_to is another such node to save the group to. Changed keys are
    replaced, new ones are added, and all other bytes stay; without a change the file is left alone.
    Error says what is wrong with the file, or which change the file cannot take.
    """
    from ._settings import Settings  # what it needs would take most of an import
    return Settings(lambda name: create(name, library), name, file, node, save_to)


def _server_at(library=None):
    path = os.path.abspath(library) if library else os.environ.get("SABXML_SERVER", "")
    if path not in _servers:
        _servers[path] = Server(path)
    return _servers[path]
