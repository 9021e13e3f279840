"""Settings groups that are loaded at the beginning of a block and saved at its end."""

import os
import shutil
import tempfile

from . import _abi
from ._errors import Error


class Settings:
    """Loads a settings group on entry and saves it when the block succeeds."""

    def __init__(self, group, file, node, save_to):
        self._group, self._file, self._node = group, file, node
        self._save_to = node if save_to is None else save_to

    def __enter__(self):
        self._group.Load(self._file, self._node)
        return self._group

    def __exit__(self, kind, error, traceback):
        if kind is None:
            if os.path.exists(self._file):  # else Save tells
                self._try_with_a_copy()
            self._group.Save(self._file, self._save_to)

    def _try_with_a_copy(self):
        """Refuses values that the file would not give back: Save leaves the keys that it has."""
        group = self._group
        values = _properties(group)
        with tempfile.TemporaryDirectory() as folder:
            copy = shutil.copy(self._file, folder)
            group.Save(copy, self._save_to)
            group.Load(copy, self._save_to)
        lost = {name: value for name, value in _properties(group).items()
                if not _is_same(value, values[name])}
        for name in lost:
            setattr(group, name, values[name])
        if lost:
            told = ", ".join(f"{name} would be {value!r} instead of {values[name]!r}"
                             for name, value in lost.items())
            raise Error(_abi.E_FAIL, f"{self._file} is left as it was, since after saving to "
                        f"{self._save_to} {told}: saving adds keys and replaces none. Save to a node "
                        "without these keys (save_to=), or change them with sabxml settings set")


def _properties(group):
    both = _abi.DISPATCH_PROPERTYGET | _abi.DISPATCH_PROPERTYPUT
    return {member.name: getattr(group, member.name) for member in group._members.values()
            if member.kinds == both and not member.parameters}


def _is_same(read, written):
    if isinstance(read, float):  # files hold six decimals
        return abs(read - written) <= 1e-6
    return read == (written.strip() if isinstance(written, str) else written)
