# Sourced by the scripts at the root: installs what a fresh Debian or Ubuntu machine lacks. Quick and
# silent when nothing is missing; without the right to install it names what is.
#
#   require_packages NAME...   each NAME a Debian package, or COMMAND=PACKAGE where any provider of
#                              the command will do

BUILD_PACKAGES="g++=g++ cmake=cmake ninja=ninja-build ccache=ccache javac=default-jdk-headless
  pkg-config=pkg-config libboost-regex-dev libicu-dev libcli11-dev libedit-dev nlohmann-json3-dev"
TEST_PACKAGES="libgtest-dev libgmock-dev locales nm=binutils git=git clang++=clang
  clang-tidy=clang-tidy clang-format=clang-format libcommons-lang3-java python3=python3 doxygen=doxygen
  valgrind=valgrind libbenchmark-dev"
DEB_PACKAGES="dpkg-shlibdeps=dpkg-dev gzip=gzip"
COVERAGE_PACKAGES="gcovr=gcovr libjacoco-java"
BENCH_PACKAGES="libbenchmark-dev"
# JPype, and the Python that it is built for.
JPYPE_PACKAGES="python3-jpype python3-numpy"

is_installed() {
  [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

require_packages() {
  missing=""
  for need in "$@"; do
    package="${need#*=}"
    case "$need" in
      *=*) command -v "${need%%=*}" >/dev/null 2>&1 || missing="$missing $package" ;;
      *) is_installed "$package" || missing="$missing $package" ;;
    esac
  done
  [ -n "$missing" ] || return 0

  as_root=""
  if [ "$(id -u)" -ne 0 ]; then
    as_root="sudo"
  fi
  if ! command -v apt-get >/dev/null 2>&1 ||
    { [ -n "$as_root" ] && ! sudo -n true 2>/dev/null && ! { command -v sudo >/dev/null && [ -t 0 ]; }; }; then
    echo "These packages are needed and not installed:$missing" >&2
    echo "Install them (on Debian or Ubuntu: apt-get install$missing), then run this again." >&2
    exit 3
  fi
  echo "Installing:$missing"
  log="$(mktemp)"
  if ! { $as_root apt-get update -qq &&
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing; } \
    >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    echo "Installing failed; these packages are needed:$missing" >&2
    exit 3
  fi
  rm -f "$log"
}

# Builds targets of a preset; what the build says is shown only when it fails.
build_quietly() {
  if ! output="$(cmake --build --preset "$@" 2>&1)"; then
    printf '%s\n' "$output" >&2
    exit 1
  fi
}

# Configures a preset once; CMake itself configures again when its files change.
configure_once() {
  [ -f "build/$1/build.ninja" ] || cmake --preset "$1"
}
