#!/usr/bin/env bash
# Measures the plug-in beside the same work in bare JNI and prints one table. Arguments go to the
# benchmark program (Google Benchmark's options, such as --benchmark_filter=REGEX).
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh

require_packages $BUILD_PACKAGES $BENCH_PACKAGES
configure_once release >/dev/null
build_quietly release
exec build/release/bin/bean_bench "$@"
