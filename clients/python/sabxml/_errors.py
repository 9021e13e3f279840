"""What goes wrong, as exceptions."""


class Error(Exception):
    """A call that failed.

    code         the result, without a sign, as in 0x80004005
    source       the ProgID of the object that failed; may be empty
    description  what happened, with file, place and reason where these are known
    """

    def __init__(self, code, description="", source=""):
        self.code = code & 0xFFFFFFFF
        super().__init__(self.code, description, source)
        self.description = description
        self.source = source

    def __str__(self):
        text = self.description or "the call failed"
        return f"{text} (0x{self.code:08X}{', ' if self.source else ''}{self.source})"


class MemberError(Error, AttributeError):
    """There is no such member, or it cannot be used so."""
