#!/bin/sh
# Fails when an include runs upwards. Usage: check_layering.sh ROOT
#
# Each folder may include itself and what stands behind it; the longest matching folder counts.
set -eu
cd "$1"
[ -d src ] || { echo "check_layering: $1 has no src/" >&2; exit 2; }

find src host -name '*.h' -o -name '*.cpp' 2>/dev/null | xargs awk '
  BEGIN {
    allowed["src/text"] = "text"
    allowed["src/os"] = "os text"
    allowed["src/collect"] = "collect text"
    allowed["src/config_file"] = "config_file collect os text"
    allowed["src/meta_object"] = "meta_object config_file collect os text"
    allowed["src/meta_object/handlers/bean"] = \
      "meta_object/handlers/bean meta_object config_file collect os text"
    allowed["host"] = "host meta_object/handlers/bean meta_object config_file collect os text"
  }
  function folder_of(path,   folder) {
    folder = path
    while (sub("/[^/]*$", "", folder)) {
      if (folder in allowed) return folder
      if (folder !~ "/") break
    }
    return (folder in allowed) ? folder : ""
  }
  function target_of(include,   folder) {
    if (include ~ "^meta_object/handlers/bean/") return "meta_object/handlers/bean"
    if (include ~ "^meta_object/handlers/") return "another handler"
    folder = include
    sub("/.*", "", folder)
    return folder
  }
  function complain(why) {
    printf "%s:%d: %s: %s\n", FILENAME, FNR, why, $0
    failed = 1
  }
  FNR == 1 { files++ }
  /^[ \t]*#[ \t]*include[ \t]*"/ {
    include = $0
    sub("^[^\"]*\"", "", include)
    sub("\".*", "", include)
    from = folder_of(FILENAME)
    if (from == "") { complain("this folder is not part of the layering"); next }
    if (include !~ "/" || include ~ "^\\.") { complain("includes start at the source root"); next }
    if (index(" " allowed[from] " ", " " target_of(include) " ") == 0) {
      complain("an include that runs upwards, out of " from)
    }
  }
  /^[ \t]*#[ \t]*include[ \t]*<jni/ {
    from = folder_of(FILENAME)
    if (from != "host" && from != "src/meta_object/handlers/bean") {
      complain("jni.h belongs to the bean handler and the host alone")
    }
  }
  END {
    if (files == 0) { print "check_layering: no source found"; failed = 1 }
    exit failed
  }'
