"""Completion for bash."""

from shlex import quote

from .help_text import FILE

SCRIPT = """\
# Completion of {name} for bash; generated from "{name} --help".

# What can come next: commands, options, and the kind of each argument.
_{name}_describe() {{
  case $1 in
{commands}
  esac
}}

# Candidates of a kind: key@0= are keys of the first argument, each with = after it. What ends with a
# colon stays as it is.
_{name}_offer() {{
  local kind=$1 subject=() suffix=
  case $kind in *[=:]) suffix=${{kind: -1}}; kind=${{kind%?}}; compopt -o nospace 2>/dev/null ;; esac
  case $kind in *@*) subject=("${{arguments[${{kind#*@}}]}}"); kind=${{kind%@*}} ;; esac
  offered=$("${{COMP_WORDS[0]}}" complete "$kind" -- "${{subject[@]}}" "${{arguments[@]}}" 2>/dev/null |
    sed "s/[^:]\$/&$suffix/")
}}

_{name}() {{
  local current=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD-1]}}
  local path='' subcommands options kinds value_of='' index word arguments=()
  COMPREPLY=()
  # "--option=value" comes as three words, and so does "CLASS:NODEPATH".
  [ "$current" = = ] && current=
  [ "$previous" = = ] && previous=${{COMP_WORDS[COMP_CWORD-2]}}
  _{name}_describe ''
  for ((index = 1; index < COMP_CWORD; index++)); do
    word=${{COMP_WORDS[index]}}
    if [ -n "$value_of" ] && [ "$word" != = ]; then
      value_of=
    elif [[ $word == -* ]]; then
      case $word in {with_value}) value_of=$word ;; esac
    elif [[ ${{#arguments[@]}} -gt 0 && ( $word == : || ${{COMP_WORDS[index-1]}} == : ) ]]; then
      arguments[-1]+=$word
    elif [[ $word != = ]]; then
      if [[ " $subcommands " == *" $word "* ]]; then
        path="${{path:+$path }}$word"
        _{name}_describe "$path"
      else
        arguments+=("$word")
      fi
    fi
  done
  local offered=
  case $previous in
{values}
    *)
      if [[ $current == -* ]]; then
        offered=$options
      elif [ -n "$subcommands" ]; then
        offered=$subcommands
      else
        # The last argument may be repeated; its kind ends with an asterisk then.
        local all=($kinds)
        local last=$((${{#all[@]}} - 1))
        local kind=${{all[${{#arguments[@]}}]:-}}
        [ -z "$kind" ] && [ $last -ge 0 ] && [[ ${{all[$last]}} == *\\* ]] && kind=${{all[$last]}}
        case ${{kind%\\*}} in
          -) ;;
          file) offered=files ;;
          ?*) _{name}_offer "${{kind%\\*}}" ;;
        esac
      fi
      ;;
  esac
  if [ "$offered" = files ]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  elif [ -n "$offered" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$current")
    # The class of a block goes on with its path.
    [[ ${{#COMPREPLY[@]}} -eq 1 && ${{COMPREPLY[0]}} == *: ]] && compopt -o nospace 2>/dev/null
  fi
}}
complete -F _{name} {name}
"""


def write(program):
    commands = []
    for command in program.all():
        options = [name for option in (*command.options, *program.options) for name in option.names]
        kinds = [(str(command.kind_of(p)) or "-") + ("*" if p.is_repeated else "")
                 for p in command.positionals]
        commands.append(f"    {quote(' '.join(command.path))})\n"
                        f"      subcommands={quote(' '.join(s.path[-1] for s in command.subcommands))}\n"
                        f"      options={quote(' '.join(dict.fromkeys(options)))}\n"
                        f"      kinds={quote(' '.join(kinds))} ;;")
    taking = {name: option for command in program.all() for option in command.options
              if option.value for name in option.names}
    values = [f"    {name}) {_offer(program, option)} ;;" for name, option in taking.items()]
    return SCRIPT.format(name=program.name, commands="\n".join(commands),
                         with_value=" | ".join(taking), values="\n".join(values))


def _offer(program, option):
    if option.choices or option.kind == FILE:
        return f"offered={quote(' '.join(option.choices) or 'files')}"
    return f"_{program.name}_offer {quote(str(option.kind))}" if option.kind.name else ":"
