"""XML documents whose elements are replaced without touching any other byte."""

import codecs
import re
from xml.parsers import expat

_TAG = re.compile(rb"""<(?:[^"'>]|"[^"]*"|'[^']*')*>""")
_INDENT = re.compile(rb"\r?\n[ \t]*$")
_COMMENT = re.compile(rb"<!--.*?-->", re.S)
_ENCODING = re.compile(rb"""<\?xml[^>]*?\sencoding\s*=\s*["']([\w.:-]+)""")
_BEGINNINGS = {codecs.BOM_UTF8: "utf-8", codecs.BOM_UTF16_LE: "utf-16-le", b"<\0": "utf-16-le",
               codecs.BOM_UTF16_BE: "utf-16-be", b"\0<": "utf-16-be"}


class Element:
    """An element by its places in the document: [start, end), and [begin, stop) of its content."""

    __slots__ = ("name", "start", "begin", "stop", "end", "children", "has_one_tag")

    def __init__(self, name, start, begin):
        self.name, self.start, self.begin, self.children = name, start, begin, []


class Document:
    """The elements of a file's bytes. Raises ValueError where these are unreadable."""

    def __init__(self, data):
        self._codec = _codec_of(data)
        text = data.decode(self._codec)
        if text.encode(self._codec) != data:
            raise ValueError(f"its characters in {self._codec} are ambiguous")
        self._data, self._edits = text.encode("utf-8"), []
        self.root, self._open = None, []
        parser = self._parser = expat.ParserCreate("utf-8")  # whatever the document declares
        parser.StartElementHandler, parser.EndElementHandler = self._start, self._end
        try:
            parser.Parse(self._data, True)
        except expat.ExpatError as error:
            raise ValueError(str(error)) from None
        del self._parser  # which refers to this

    def differing(self, other):
        """The element that has more children in another document, which else is equal; or None."""
        pairs = [(self.root, other.root)]
        for mine, theirs in pairs:
            if len(mine.children) != len(theirs.children):
                return mine
            pairs.extend(zip(mine.children, theirs.children))
        return None

    def value(self, element):
        """What an element is, apart from white space between elements."""
        if not element.children:
            return element.name, self._data[element.begin:element.stop]
        return element.name, [self.value(child) for child in element.children]

    def fill(self, element, value):
        """Replaces the content of an element; comments beside a text stay."""
        content, comments = value[1], []
        if not element.children:
            comments = _COMMENT.findall(self._data, element.begin, element.stop)
        if isinstance(content, bytes):
            new = content + b"".join(comments)
        else:
            indent = self._indent(element)
            step = self._step(indent)
            new = b"".join(indent + step + comment for comment in comments)
            new += _written(content, indent + step, step) + indent
        self._set_content(element, new)

    def append(self, element, values):
        """Adds elements after the last child of an element."""
        if not values:
            return
        indent = self._indent(element)
        if element.children:
            last = element.children[-1]
            inner = self._indent(last)
            step = inner[len(indent):] or self._step(indent)
            self._edits.append((last.end, last.end, _written(values, inner, step)))
        else:
            step = self._step(indent)
            old = self._data[element.begin:element.stop].rstrip()
            self._set_content(element, old + _written(values, indent + step, step) + indent)

    def remove(self, element):
        """Removes an element with the white space before it."""
        start = element.start - len(self._indent(element))
        self._edits.append((start, element.end, b""))

    def edited(self):
        """The bytes with all changes, in the encoding that they had."""
        data = bytearray(self._data)
        for start, end, new in sorted(self._edits, reverse=True):
            data[start:end] = new
        return data.decode("utf-8").encode(self._codec, "xmlcharrefreplace")

    def _set_content(self, element, new):
        if element.has_one_tag:
            tag = self._data[element.start:element.end - 2].rstrip()
            new = tag + b">" + new + b"</" + element.name.encode() + b">"
            self._edits.append((element.start, element.end, new))
        else:
            self._edits.append((element.begin, element.stop, new))

    def _indent(self, element):
        found = _INDENT.search(self._data, max(0, element.start - 200), element.start)
        return found.group() if found else b""

    def _step(self, indent):
        # As far as the root's children are from the margin.
        first = self.root.children[:1]
        return self._indent(first[0]).lstrip(b"\r\n") if indent and first else b""

    def _start(self, name, attributes):
        start = self._parser.CurrentByteIndex
        tag = _TAG.match(self._data, start)  # not in an entity, as the server takes none
        if tag is None:
            raise ValueError(f"the tag of {name} is not found")
        element = Element(name, start, tag.end())
        element.has_one_tag = tag.group().endswith(b"/>")
        if self._open:
            self._open[-1].children.append(element)
        else:
            self.root = element
        self._open.append(element)

    def _end(self, name):
        element, place = self._open.pop(), self._parser.CurrentByteIndex
        if element.has_one_tag:
            element.stop = element.end = element.begin
        else:
            element.stop, element.end = place, self._data.index(b">", place) + 1


def _written(values, indent, step):
    """Elements as a document has them, each after its indentation."""
    written = b""
    for name, content in values:
        if not isinstance(content, bytes):
            content = _written(content, indent + step, step) + indent
        written += indent + b"<%b>%b</%b>" % (name.encode(), content, name.encode())
    return written


def _codec_of(data):
    for beginning, codec in _BEGINNINGS.items():
        if data.startswith(beginning):
            return codec
    declared = _ENCODING.match(data[:200])
    name = declared.group(1).decode() if declared else "utf-8"
    try:
        return codecs.lookup(name).name
    except LookupError as error:
        raise ValueError(str(error)) from None
