# The commands and options in the manual page and in the completions are those of the help, no more
# and no fewer.
beanhost="$1/bin/beanhost"
options_in() { grep -oE -e '--[a-z][a-z-]*' | sort -u; }

# same WHAT WHERE EXPECTED FOUND
same() {
  [ -n "$3" ] && [ "$3" = "$4" ] && return
  printf 'the %s of %s\n  expected: %s\n  found:    %s\n' "$1" "$2" "$(echo $3)" "$(echo $4)"
  exit 1
}

commands="$("$beanhost" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p' | sort)"
general="$("$beanhost" --help | sed -n '/^Options:/,/^$/p' | options_in)"
options="$({ "$beanhost" --help; for name in $commands; do "$beanhost" "$name" --help; done; } |
  options_in)"

manual="$(sed 's/\\-/-/g; s/"//g' "$1/share/man/man1/beanhost.1")"
section() { echo "$manual" | sed -n "/^\.SH $1\$/,/^\.SH /p"; }
same commands "the manual page" "$commands" \
  "$(section COMMANDS | grep -A1 '^\.TP' | sed -n 's/^\.BI\{0,1\} \([a-z]*\).*/\1/p' | sort)"
same options "the manual page" "$options" "$({ section COMMANDS; section OPTIONS; } | options_in)"

# What bash offers behind these words.
offers() {
  bash -c '. "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _beanhost
           printf "%s\n" "${COMPREPLY[@]}"' - "$completion" "$@" | sort
}
completion="$1/share/bash-completion/completions/beanhost"
same commands "the completion for bash" "$commands" "$(offers beanhost '')"
same options "the completion for bash" "$general" "$(offers beanhost --json --)"
same options "the completion for bash, behind walk" "$options" "$(offers beanhost --deny x walk --)"

completion="$1/share/zsh/site-functions/_beanhost"
same commands "the completion for zsh" "$commands" \
  "$(sed -n '/^commands=/,/^)/s/^  .\([a-z]*\):.*/\1/p' "$completion" | sort)"
same options "the completion for zsh" "$options" "$(options_in <"$completion")"
