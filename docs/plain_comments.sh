#!/bin/sh
# Marks plain comments as documentation for Doxygen: whole lines for what follows, comments behind
# code for what stands before them. What looks like a command or a tag is text.
sed -E \
  -e '/^ *\/\//{s/[\\@<>&#]/\\&/g;s#^( *)//#\1///#;}' \
  -e '/^ *\/\//!{/[;,{}] +\/\/ /{s#([;,{}]) +// #\1  ///< #;}}' \
  "$1"
