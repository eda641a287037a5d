#!/usr/bin/env bash
# Runs the suite on a build that records which lines ran, and prints the line coverage of each
# folder of src/, of host/ and of the Java side, which its own test measures. The lines that never
# ran are named in build/coverage/lines.txt.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh

require_packages $BUILD_PACKAGES $TEST_PACKAGES $COVERAGE_PACKAGES
configure_once coverage >/dev/null
build_quietly coverage
build=build/coverage
find $build -name '*.gcda' -delete
failed=0
ctest --preset coverage --output-log $build/ctest.log --quiet || failed=$?
[ "$failed" = 0 ] || echo "coverage.sh: tests failed; $build/ctest.log tells which" >&2

gcovr --root . --filter src/ --filter host/ --exclude-throw-branches --exclude-unreachable-branches \
  --csv $build/lines.csv --txt $build/lines.txt $build
jdk="$(sed -n 's/^JDK_HOME:PATH=//p' $build/CMakeCache.txt)"
class_path=$build/tests/bean_handler_test.jar
for jar in org.jacoco.core asm asm-tree asm-commons asm-analysis; do
  class_path=$class_path:/usr/share/java/$jar.jar
done
"$jdk/bin/java" -cp "$class_path" cmake/JavaCoverage.java $build/bin/javabean_handler.jar \
  BeanHandlerTest $build/tests/test_beans.jar | grep '\.java,' >$build/java_lines.csv
sed 's/^\([^,]*\),.*,\(.*\)$/java\/\1 without lines \2/' $build/java_lines.csv >>$build/lines.txt

awk -F, '
  function add(name) { lines[name] += $2; ran[name] += $3 }
  function row(name) {
    return sprintf("%-30s %6d %6d  %5.1f %%", name, lines[name], ran[name],
                   100 * ran[name] / lines[name])
  }
  FILENAME ~ /java_lines/ { add("java"); next }
  FNR > 1 { folder = $1; sub("/[^/]*$", "", folder); folders[folder]; add(folder); add("src and host") }
  END {
    printf "%-30s %6s %6s\n", "", "lines", "ran"
    fflush()
    for (name in folders) print row(name) | "sort"
    close("sort")
    print row("src and host")
    print row("java")
  }' $build/lines.csv $build/java_lines.csv
exit $failed
