#pragma once

#include "text/zu_text.h"

namespace quenlatrix::config_file {

// What a user's start-up file, ".profile" or if that can't be opened ".cshrc" in the directory
// `home`, sets the installation root to: what stands behind "QUENLATRIX_PATH" and one character on
// the first line that has this name, quotes and blanks included. False, with `root` as it was, when
// there is no such file or line. Threads: any.
bool ReadRootFromStartUpFile(const char* home, ZuText& root);

}  // namespace quenlatrix::config_file
