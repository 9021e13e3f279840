"""Completion for zsh."""

from .help_text import FILE


def write(program):
    lines = [f"#compdef {program.name}",
             f'# Completion of {program.name} for zsh; generated from "{program.name} --help".', "",
             "# Candidates of a kind, for the argument of a place, with what each ends with.",
             f"_{program.name}_offer() {{",
             f"  local -a words=(${{(f)\"$({program.name} complete $1 -- $line[$2] $line 2>/dev/null)\"}})",
             "  local -a blocks=(${(M)words:#*:}) others=(${words:#*:})",
             "  compadd -S '' -- $blocks",
             "  [[ -n $3 ]] && compadd -S '' -- ${^others}$3 || compadd -- $others",
             "}", ""]
    for command in reversed(list(program.all())):
        lines += _function(program, command) + [""]
    lines.append(f'_{program.name} "$@"')
    return "\n".join(lines) + "\n"


def _function_name(command):
    return "_" + "_".join([command.name, *command.path])


def _function(program, command):
    options = {name: option for option in (*command.options, *program.options)
               for name in option.names}
    accepted = [_option(program, name, option) for name, option in options.items()]
    if not command.subcommands:
        accepted += [_positional(command, index) for index in range(len(command.positionals))]
        body = ["  local -a line", "  _arguments -s " + " \\\n    ".join(accepted)]
    else:
        accepted += ["'1: :->command'", "'*:: :->arguments'"]
        body = ["  local state line", "  _arguments -C -s " + " \\\n    ".join(accepted),
                "  case $state in", "    command)", "      local -a commands=("]
        body += [f"        {_quoted(s.path[-1] + ':' + s.summary)}" for s in command.subcommands]
        body += ["      )", "      _describe command commands ;;", "    arguments)",
                 "      case $words[1] in"]
        body += [f"        {s.path[-1]}) {_function_name(s)} ;;" for s in command.subcommands]
        body += ["      esac ;;", "  esac"]
    return [f"{_function_name(command)}() {{", *body, "}"]


def _option(program, name, option):
    text = f"{name}[{_plain(option.help)}]"
    if option.choices:
        text += f":value:({' '.join(option.choices)})"
    elif option.value:
        text += f":value:{_action(program, option.kind)}"
    return _quoted(text)


def _positional(command, index):
    positional = command.positionals[index]
    action = _action(command, command.kind_of(positional))
    place = "*" if positional.is_repeated else str(index + 1)
    return _quoted(f"{place}:{_plain(positional.name)}:{action}")


def _action(command, kind):
    if kind == FILE or not kind.name:
        return "_files" if kind == FILE else " "
    suffix = kind.suffix.replace(":", "\\:")
    # In braces it is called as it is, without options of _arguments before its own arguments.
    return f"{{_{command.name}_offer {kind.name} {kind.of + 1} {suffix}}}"


def _plain(text):
    return text.replace("\\", "\\\\").replace("[", "\\[").replace("]", "\\]").replace(":", "\\:")


def _quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"
