# expect PATTERN COMMAND...: fails unless the command succeeds and all of its output matches the
# shell pattern.
expect() {
  pattern="$1"
  shift
  found="$("$@")"
  # shellcheck disable=SC2254
  case "$found" in
    $pattern) ;;
    *)
      printf '%s\n  expected: %s\n  found:    %s\n' "$*" "$pattern" "$found"
      exit 1
      ;;
  esac
}
