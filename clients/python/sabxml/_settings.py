"""Settings groups that are loaded at the beginning of a block and whose changes are saved at its end."""

import errno
import os
import shutil
import tempfile
from collections import defaultdict
from pathlib import Path

from . import _abi
from ._document import Document
from ._errors import Error

_PROBE = "VeDisplayCfgParser"  # a group that always has keys
_BOTH = _abi.DISPATCH_PROPERTYGET | _abi.DISPATCH_PROPERTYPUT


class Saved:
    """What a group saves: its values in runs of equal names, and other files beside its own."""

    def __init__(self, data, beside, refusal):
        self.data, self.beside, self.refusal = data, beside, refusal
        self.runs = _runs(Document(data))


class Settings:
    """Loads a settings group on entry and saves what has changed when the block succeeds."""

    def __init__(self, create, name, file, node, save_to):
        self._create, self._name = create, name
        self._file, self._node = os.fspath(file), node
        self._save_to = node if save_to is None else save_to
        self._group = create(name)
        load = self._group._members.get("load")
        if load is None or [p.name for p in load.parameters] != ["i_bsCfgPath", "i_bsNodePath"]:
            raise Error(_abi.E_NOINTERFACE, f"{name} is no settings group: a group is a class with "
                        "Load(file, node), such as VeDisplayCfgParser")

    def __enter__(self):
        data = None
        while data != (data := self._read()):  # until nothing else has written it meanwhile
            self._group.Load(self._file, self._node)
        with tempfile.TemporaryDirectory() as folder:
            for node in {self._node, self._save_to}:
                self._with_probe(folder, data, node)
        self._before = self._saved(self._group)
        self._beside = {name: self._read_beside(name) for name in self._before.beside}
        self._properties = self._properties_of(self._group)
        return self._group

    def __exit__(self, kind, error, traceback):
        if kind is not None:
            return
        after = self._saved(self._group)
        self._refuse_what_is_never_saved(after)
        replacements = {}
        for name, data in after.beside.items():
            if data != self._before.beside.get(name):
                if self._read_beside(name) != self._beside.get(name):
                    raise self._left(f"another program has changed {name} beside it. Try again")
                replacements[os.path.join(os.path.dirname(self._file), name)] = data
        if self._save_to != self._node or after.runs != self._before.runs:
            new = None
            while new is None or self._read() != now:  # another program has just changed it
                now = self._read()
                new = self._changed(now, after)
            if new != now:
                replacements[self._file] = new
        for path, data in replacements.items():
            try:
                _replace(path, data)
            except OSError as error:
                raise Error(_abi.E_FAIL, f"{path} is left as it was: {error.strerror}") from None

    def _changed(self, data, after):
        """The bytes of the file with what has changed, checked by loading them."""
        with tempfile.TemporaryDirectory() as folder:
            try:
                document = Document(data)
                block = document.differing(Document(self._with_probe(folder, data, self._save_to)))
                if block is None:
                    raise ValueError("its elements are not found")
            except ValueError as error:
                raise self._left(f"{error}. Use sabxml settings set") from None
            if self._save_to == self._node:
                before = self._before.runs
            else:
                there = self._saved(self._loaded(folder, data, self._save_to)).runs
                before = {key: there.get(key) for key in _runs(document, block) if key in after.runs}
            changed = _put(document, block, before, after.runs)
            new = document.edited()
            # A file that has nothing but this group tells what a load takes of it.
            wanted = self._saved(self._loaded(folder, after.data, "/Settings")).runs
            actual = self._saved(self._loaded(folder, new, self._save_to)).runs
        lost = sorted({key[0] for key in changed if wanted.get(key) != actual.get(key)})
        if lost:
            raise self._left(f"{', '.join(lost)} in {self._save_to} would not be loaded as changed. "
                             "Name a node path that leads to one element")
        return new

    def _refuse_what_is_never_saved(self, after):
        for name, value in self._properties_of(self._group).items():
            if value == self._properties[name]:
                continue
            if after.refusal:
                raise self._left(f"{name} cannot be saved: {after.refusal.description}")
            group = self._create(self._name)
            group.Load(self._file, self._node)
            setattr(group, name, value)
            if self._saved(group).runs == self._before.runs:
                raise self._left(f"{self._name} does not save {name}, whose change from "
                                 f"{self._properties[name]!r} to {value!r} would be lost. If it is a key, "
                                 "use sabxml settings set")

    def _with_probe(self, folder, data, node):
        """The bytes of a copy to whose node a group was saved that always has keys."""
        copy = self._copy(folder, data)
        self._tell(self._create(_PROBE).Save, copy, node)
        probed = Path(copy).read_bytes()
        if probed == data:
            raise Error(_abi.E_INVALIDARG, f'{self._file}: the node path "{node}" leads to no element: '
                        "give the path of the element with the keys")
        return probed

    def _loaded(self, folder, data, node):
        group = self._create(self._name)
        self._tell(group.Load, self._copy(folder, data), node)
        return group

    def _saved(self, group):
        refusal = None
        with tempfile.TemporaryDirectory() as folder:
            own = self._copy(folder, b"<Settings/>")
            try:
                self._tell(group.Save, own, "/Settings")
            except Error as error:
                if error.code != _abi.E_NOTIMPL:
                    raise
                refusal = error
            files = {path.name: path.read_bytes() for path in Path(folder).iterdir()}
        return Saved(files.pop(os.path.basename(own)), files, refusal)

    def _copy(self, folder, data):
        path = os.path.join(folder, "settings.copy.xml")
        Path(path).write_bytes(data)
        return path

    def _tell(self, method, copy, node):
        """Calls a method for a copy, whose name means nothing to anybody."""
        try:
            method(copy, node)
        except Error as error:
            group = type(self._group).__name__[1:]
            raise Error(error.code, error.description.replace(copy, self._file),
                        error.source.replace(_PROBE, group)) from None

    def _read(self):
        try:
            return Path(self._file).read_bytes()
        except FileNotFoundError:
            raise Error(_abi.E_FILENOTFOUND, f"{self._file}: there is no such file to change. Make it, with "
                        f"an element at {self._node}, or use sabxml settings set --create") from None
        except OSError as error:
            raise Error(_abi.E_FAIL, f"{self._file}: {error.strerror}: name a file of settings") from None

    def _read_beside(self, name):
        path = Path(os.path.dirname(self._file), name)
        return path.read_bytes() if path.exists() else None

    def _left(self, reason):
        return Error(_abi.E_FAIL, f"{self._file} is left as it was: {reason}")

    @staticmethod
    def _properties_of(group):
        return {member.name: getattr(group, member.name) for member in group._members.values()
                if member.kinds == _BOTH and not member.parameters}


def _runs(document, element=None):
    """The values of an element's children by their names and whether they are texts."""
    runs = defaultdict(list)
    for child in (element or document.root).children:
        runs[child.name, not child.children].append(document.value(child))
    return dict(runs)


def _put(document, block, before, after):
    """Changes the children of a block that differ before and after; returns their keys.

    The first child of a name counts, or, where a group has a name several times, as many as it has.
    """
    changed = [key for key in {**before, **after} if before.get(key) != after.get(key)]
    added = []
    for key in changed:
        children = [child for child in block.children if (child.name, not child.children) == key]
        new = after.get(key, [])
        for child, value in zip(children, new):
            if document.value(child) != value:
                document.fill(child, value)
        if len(new) < len(before.get(key) or []):
            for child in children[len(new):]:
                document.remove(child)
        added += new[len(children):]
    document.append(block, added)
    return changed


def _replace(path, data):
    """Gives a file other bytes in one step; its permissions stay."""
    path = os.path.realpath(path)
    if os.path.exists(path) and not os.access(path, os.W_OK):
        raise PermissionError(errno.EACCES, os.strerror(errno.EACCES))
    handle, temporary = tempfile.mkstemp(dir=os.path.dirname(path), prefix=f".{os.path.basename(path)}.")
    try:
        with os.fdopen(handle, "wb") as file:
            file.write(data)
            file.flush()
            os.fsync(file.fileno())
        if os.path.exists(path):
            shutil.copymode(path, temporary)
        os.replace(temporary, path)
    except BaseException:
        os.unlink(temporary)
        raise
