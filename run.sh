#!/usr/bin/env bash
# Builds the plug-in and the reference host and shows the main job on real classes.
# With arguments: builds the same and runs `beanhost` with them.
set -euo pipefail
caller="$PWD"
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh

# QUENLATRIX_BUILD names a build directory to use as it is.
build="${QUENLATRIX_BUILD:-$PWD/build/run}"
beanhost="$build/bin/beanhost"
if [ -z "${QUENLATRIX_BUILD:-}" ]; then
  require_packages $BUILD_PACKAGES
  configure_once run >/dev/null
  [ -x "$beanhost" ] || echo "Building; the first time takes a minute or two." >&2
  build_quietly run --target beanhost javabean_handler tally_handler examples_jar beanhost_jar
fi

if [ "$#" -gt 0 ]; then
  cd "$caller"
  exec "$beanhost" --class-path "$build/bin/examples.jar" "$@"
fi

# Shows the command as it can be typed, too.
show() {
  printf '\n$ ./run.sh'
  for word in "$@"; do
    case "$word" in
      *[!A-Za-z0-9_./-]*) printf " '%s'" "$word" ;;
      *) printf ' %s' "$word" ;;
    esac
  done
  printf '\n'
  "$beanhost" --class-path "$build/bin/examples.jar" "$@"
}

show describe examples.Greeter
show call java.lang.StringBuilder 'append(java.lang.String)' hello
show call java.util.Random 'nextInt(int)' 10
show run examples/tour.bean
