# bash completion for beanhost

_beanhost() {
  local commands="handlers beans describe call walk run shell"
  local options="--help --class-path --java-option --plugin --allow --deny --event-log --json
    --keep-going --version"
  local current="${COMP_WORDS[COMP_CWORD]}" command="" i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case "${COMP_WORDS[i]}" in
      --class-path | --java-option | --plugin | --allow | --deny | --event-log | --skip) ((i++)) ;;
      :) ((i++)) ;;  # bash splits a class path there
      -*) ;;
      *)
        command="${COMP_WORDS[i]}"
        break
        ;;
    esac
  done

  case "${COMP_WORDS[COMP_CWORD - 1]}" in
    --plugin | --event-log | --class-path | :)
      compopt -o default 2>/dev/null
      return
      ;;
    --java-option | --allow | --deny | --skip) return ;;
  esac
  case "$command" in
    "") ;;
    walk) options="$options --skip" ;;
    beans | run) compopt -o default 2>/dev/null ;;
    call) return ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  elif [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
  fi
}

complete -F _beanhost beanhost
