"""Completion for zsh."""


def write(program):
    lines = [f"#compdef {program.name}",
             f'# Completion of {program.name} for zsh; generated from "{program.name} --help".', "",
             f"_{program.name}_class_names() {{",
             f"  compadd -- ${{(f)\"$({program.name} classes 2>/dev/null | awk '{{print $1}}')\"}}",
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
    accepted = [_option(name, option) for name, option in options.items()]
    if not command.subcommands:
        accepted += [_positional(command, index) for index in range(len(command.positionals))]
        body = ["  _arguments -s " + " \\\n    ".join(accepted)]
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


def _option(name, option):
    text = f"{name}[{_plain(option.help)}]"
    if option.choices:
        text += f":value:({' '.join(option.choices)})"
    elif option.value:
        text += ":file:_files"
    return _quoted(text)


def _positional(command, index):
    positional = command.positionals[index]
    action = {"class": f"_{command.name}_class_names", "file": "_files"}.get(positional.kind, " ")
    place = "*" if positional.is_repeated else str(index + 1)
    return _quoted(f"{place}:{_plain(positional.name)}:{action}")


def _plain(text):
    return text.replace("\\", "\\\\").replace("[", "\\[").replace("]", "\\]").replace(":", "\\:")


def _quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"
