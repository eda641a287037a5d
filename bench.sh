#!/usr/bin/env bash
# Measures the plug-in beside the same work in bare JNI and prints the tables. With --jpype before
# anything else JPype's times on the same work stand in a table of their own. Further arguments go to
# the benchmark program (Google Benchmark's options, such as --benchmark_filter=REGEX).
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh

require_packages $BUILD_PACKAGES $BENCH_PACKAGES
jpype=""
if [ "${1:-}" = --jpype ]; then
  jpype=yes
  shift
  require_packages $JPYPE_PACKAGES
fi
# QUENLATRIX_BUILD names a build directory to use as it is.
build="${QUENLATRIX_BUILD:-build/release}"
if [ -z "${QUENLATRIX_BUILD:-}" ]; then
  configure_once release >/dev/null
  build_quietly release
fi
"$build/bin/bean_bench" --check
if [ -z "$jpype" ]; then
  exec "$build/bin/bean_bench" "$@"
fi
times="$(mktemp)"
trap 'rm -f "$times"' EXIT
"$build/bin/bean_bench" --benchmark_out="$times" --benchmark_out_format=json "$@"
# The distribution's own Python, for which its JPype is built, and the place of its JPype's Java side.
/usr/bin/python3 bench/jpype_bench.py "$times" "$build/bench/bench_beans.jar" \
  /usr/share/java/org.jpype.jar
