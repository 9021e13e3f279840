"""The manual page."""

SECTIONS = {"Examples:": "EXAMPLES", "Example:": "EXAMPLES", "Environment:": "ENVIRONMENT",
            "Exit codes:": "EXIT STATUS"}


def write(command, version):
    name = command.name
    lines = [f'.\\" Generated from "{name} --help".',
             f'.TH {name.upper()} 1 "" "{name} {version}" "User Commands"',
             ".SH NAME", f"{name} \\- {_escaped(_as_phrase(command.summary))}",
             ".SH SYNOPSIS", *_synopsis(command),
             ".SH DESCRIPTION", _escaped(command.summary),
             ".SH OPTIONS", "These can also follow a command.", *_options(command.options),
             ".SH COMMANDS"]
    inherited = {command.footer}
    for subcommand in list(command.all())[1:]:
        lines += [f'.SS "{_escaped(" ".join(subcommand.path))}"', *_synopsis(subcommand), ".PP",
                  _escaped(subcommand.summary) + "."]
        lines += _positionals(subcommand) + _options(subcommand.options[1:])  # without --help
        if subcommand.footer not in inherited:
            lines += _footer(subcommand.footer, ".PP")
        inherited.add(subcommand.footer)
    lines += _footer(command.footer, ".SH")
    return "\n".join(lines) + "\n"


def _escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    text = "".join(c if ord(c) < 128 else f"\\[u{ord(c):04X}]" for c in text)
    return "\\&" + text if text[:1] in (".", "'") else text


def _as_phrase(sentence):
    return sentence[:1].lower() + sentence[1:].rstrip(".")


def _synopsis(command):
    program, _, arguments = command.usage.partition(" ")
    for word in command.path:
        arguments = arguments.removeprefix(word).lstrip()
    return [f".B {_escaped(' '.join([program, *command.path]))}", _escaped(arguments)]


def _positionals(command):
    lines = []
    for positional in command.positionals:
        dots = "..." if positional.is_repeated else ""
        lines += [".TP", f"\\fI{_escaped(positional.name)}\\fR{dots}", _escaped(positional.help)]
    return lines


def _options(options):
    lines = []
    for option in options:
        tag = ", ".join(f"\\fB{_escaped(name)}\\fR" for name in option.names)
        value = "|".join(option.choices) or ("value" if option.value else "")
        lines += [".TP", tag + (f" \\fI{_escaped(value)}\\fR" if value else ""),
                  _escaped(option.help)]
    return lines


def _footer(text, heading):
    """Running text fills its lines; what is indented stays as it is."""
    lines = []
    for block in text.split("\n\n"):
        first, *rest = block.split("\n")
        if first in SECTIONS:
            title = SECTIONS[first] if heading == ".SH" else _escaped(first)
            lines += [f'.SH "{title}"'] if heading == ".SH" else [".PP", title]
            block = "\n".join(rest)
        else:
            lines += [".PP"]
        if block.startswith("  "):
            lines += [".PP", ".nf", ".RS", *(_escaped(line.strip()) for line in block.split("\n")),
                      ".RE", ".fi"]
        else:
            lines += [_escaped(line) for line in block.split("\n")]
    return lines
