"""Completion for fish."""

SCRIPT = """\
# Completion of {name} for fish; generated from "{name} --help".

# Whether the command line is that of a command: its names so far, without options.
function __{name}_is
    set -l known {known}
    set -l path ''
    set -l is_value 0
    for word in (commandline -opc)[2..-1]
        if test $is_value = 1
            set is_value 0
        else if contains -- $word {with_value}
            set is_value 1
        else if not string match -q -- '-*' $word
            set -l longer (string trim -- "$path $word")
            contains -- $longer $known; or break
            set path $longer
        end
    end
    test "$path" = "$argv[1]"
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
        kinds = {positional.kind for positional in command.positionals}
        if "class" in kinds:
            classes = f"({program.name} classes 2>/dev/null | string match -r \"^\\\\S+\")"
            lines.append(f"{start} -a {_quoted(classes)}\n")
        if "file" in kinds:
            lines.append(f"{start} -F\n")
        # The program's own options can be anywhere.
        start = start if command.path else f"complete -c {program.name}"
        for option in command.options:
            if command.path and "--help" in option.names:
                continue
            names = " ".join(f"-l {n[2:]}" if n.startswith("--") else f"-s {n[1:]}"
                             for n in option.names)
            values = f" -x -a {_quoted(' '.join(option.choices))}" if option.choices else \
                " -r -F" if option.value else ""
            lines.append(f"{start} {names}{values} -d {_quoted(option.help)}\n")
    return "".join(lines)


def _quoted(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"
