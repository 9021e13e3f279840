"""Completion for fish."""

from .help_text import FILE

SCRIPT = """\
# Completion of {name} for fish; generated from "{name} --help".

# The arguments of a command, without its options. Fails where the line is that of another command.
function __{name}_arguments
    set -l known {known}
    set -l path ''
    set -l is_value 0
    set -l arguments
    for word in (commandline -opc)[2..-1]
        if test $is_value = 1
            set is_value 0
        else if contains -- $word {with_value}
            set is_value 1
        else if not string match -q -- '-*' $word
            set -l longer (string trim -- "$path $word")
            if test -z "$arguments"; and contains -- $longer $known
                set path $longer
            else
                set -a arguments $word
            end
        end
    end
    test "$path" = "$argv[1]"; or return
    for argument in $arguments
        echo $argument
    end
end

# Whether it is the argument of a place that comes next; the last of a command may be repeated.
function __{name}_is
    set -l arguments (__{name}_arguments "$argv[1]"); or return
    set -q argv[2]; or return 0
    test (count $arguments) $argv[2] $argv[3]
end

function __{name}_offer -a path kind of
    set -l arguments (__{name}_arguments $path)
    {name} complete $kind -- $arguments[$of] $arguments 2>/dev/null
end

complete -c {name} -f
"""


def write(program):
    taking = [name for command in program.all() for option in command.options if option.value
              for name in option.names]
    known = [_quoted(" ".join(command.path)) for command in program.all() if command.path]
    lines = [SCRIPT.format(name=program.name, known=" ".join(known), with_value=" ".join(taking))]
    for command in program.all():
        condition = f"-n {_quoted(f'__{program.name}_is ' + _quoted(' '.join(command.path)))}"
        start = f"complete -c {program.name} {condition}"
        for subcommand in command.subcommands:
            lines.append(f"{start} -a {subcommand.path[-1]} -d {_quoted(subcommand.summary)}\n")
        for index, positional in enumerate(command.positionals):
            kind = command.kind_of(positional)
            place = f"{'-ge' if positional.is_repeated else '-eq'} {index}"
            here = start[:-1] + f" {place}'"
            if kind.name:
                lines.append(f"{here} -F\n" if kind == FILE else
                             f"{here} -a {_quoted(_offer(command, kind))}\n")
        # The program's own options can be anywhere.
        start = start if command.path else f"complete -c {program.name}"
        for option in command.options:
            if command.path and "--help" in option.names:
                continue
            names = " ".join(f"-l {n[2:]}" if n.startswith("--") else f"-s {n[1:]}"
                             for n in option.names)
            values = f" -x -a {_quoted(' '.join(option.choices))}" if option.choices else \
                "" if not option.value else " -r -F" if option.kind == FILE else " -x" + (
                    f" -a {_quoted(_offer(command, option.kind))}" if option.kind.name else "")
            lines.append(f"{start} {names}{values} -d {_quoted(option.help)}\n")
    return "".join(lines)


def _offer(command, kind):
    path = _quoted(" ".join(command.path))
    suffix = f" | string replace -r '([^:])$' '$1{kind.suffix}'" if kind.suffix else ""
    return f"(__{command.name}_offer {path} {kind.name} {kind.of + 1 or ''}{suffix})"


def _quoted(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"
