. "${0%/*}/expect.sh"
program="$1.minimal_host"
export PKG_CONFIG_PATH="$1/lib/pkgconfig"
expect "$VERSION" pkg-config --modversion quenlatrix-meta-object
# shellcheck disable=SC2046
"$CXX" -std=c++20 -I"$JAVA_HOME/include" -I"$JAVA_HOME/include/linux" -o "$program" \
  "$SOURCE/examples/minimal_host/minimal_host.cpp" \
  $(pkg-config --cflags --libs quenlatrix-meta-object)
expect "length: 6
toString: {5}" "$program" "$JAVA_HOME/lib/server/libjvm.so" \
  "$1/lib/quenlatrix/javabean_handler.so" "$1/share/quenlatrix/javabean_handler.jar"
