#!/usr/bin/env bash
# Runs every test: static analysis, the suites under ThreadSanitizer and AddressSanitizer, and the
# whole suite, on each JDK found. `./test.sh dev` (lint, tsan, asan) runs one stage alone.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh

require_packages $BUILD_PACKAGES $TEST_PACKAGES $DEB_PACKAGES

for stage in ${@:-lint tsan asan dev}; do
  case "$stage" in
    lint | tsan | asan | dev) ;;
    *)
      echo "test.sh: no stage '$stage'; there are lint, tsan, asan and dev" >&2
      exit 2
      ;;
  esac
  printf '== %s\n' "$stage"
  configure_once "$stage"
  cmake --build --preset "$stage" -- --quiet
  if [ "$stage" != lint ]; then
    ctest --preset "$stage"
  fi
done
