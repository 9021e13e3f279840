"""Settings groups that are loaded at the beginning of a block and saved at its end."""

import os
import shutil
import tempfile

from . import _abi
from ._errors import Error


class Settings:
    """Loads a settings group on entry and saves it when the block succeeds."""

    def __init__(self, create, file, node, save_to):
        self._create, self._file, self._node = create, file, node
        self._save_to = node if save_to is None else save_to
        self._group = create()

    def __enter__(self):
        self._group.Load(self._file, self._node)
        return self._group

    def __exit__(self, kind, error, traceback):
        if kind is not None:
            return
        if os.path.exists(self._file):  # else Save tells
            self._refuse_what_would_be_lost()
        self._group.Save(self._file, self._save_to)

    def _refuse_what_would_be_lost(self):
        """Compares what would be loaded after saving with what is loaded from a file without keys."""
        with tempfile.TemporaryDirectory() as folder:
            empty = os.path.join(folder, "empty")
            os.mkdir(empty)
            empty = os.path.join(empty, "settings.xml")
            with open(empty, "w") as file:
                file.write("<Settings/>")
            wanted = self._saved_and_loaded(empty, "/Settings")
            kept = self._saved_and_loaded(shutil.copy(self._file, folder), self._save_to)
        lost = [f"{name} would stay {value!r} instead of {wanted[name]!r}"
                for name, value in kept.items() if value != wanted[name]]
        if lost:
            raise Error(_abi.E_FAIL, f"{self._file} is left as it was. Saving adds keys to "
                        f"{self._save_to} and replaces none: {', '.join(lost)}. Save to a node without "
                        "these keys (save_to=), or change them with sabxml settings set")

    def _saved_and_loaded(self, file, node):
        self._group.Save(file, node)
        group = self._create()
        group.Load(file, node)
        both = _abi.DISPATCH_PROPERTYGET | _abi.DISPATCH_PROPERTYPUT
        return {member.name: getattr(group, member.name) for member in group._members.values()
                if member.kinds == both and not member.parameters}
