. "${0%/*}/expect.sh"
# The images of this build, and the plug-in as the Debian packages carry it.
tree="$1.hardened"
"$CMAKE" --preset package -S "$SOURCE" -B "$tree" >"$tree.log"
"$CMAKE" --build "$tree" --parallel 2 --target javabean_handler >>"$tree.log"

packaged="$tree/bin/javabean_handler.so"
for image in "$BUILD/bin/javabean_handler.so" "$BUILD/bin/beanhost" "$packaged"; do
  expect "* GNU_RELRO *" readelf --wide --segments "$image"
  expect "*(FLAGS_1)*NOW*" readelf --wide --dynamic "$image"
  # RWE would be a stack that can be executed.
  expect "*RW  0x*" sh -c 'readelf --wide --segments "$1" | grep GNU_STACK' - "$image"
  expect "* __stack_chk_fail@*" nm --dynamic "$image"
  expect "* std::__glibcxx_assert_fail(*" nm --dynamic --demangle "$image"
done
expect "*_chk@GLIBC*" nm --dynamic "$packaged"
