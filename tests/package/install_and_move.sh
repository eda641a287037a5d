# Installs the build into a scratch prefix and moves that to $1.
former="$1.before"
rm -rf "$1" "$former"
"$CMAKE" --install "$BUILD" --prefix "$former" >"$1.log"
mv "$former" "$1"
# Nothing that is read at build or at run time may name the place where it came from.
if grep -rlF -e "$former" -e "$SOURCE" "$1/lib/cmake" "$1/lib/pkgconfig" "$1/etc"; then
  echo "these files name a place of the build"
  exit 1
fi
