#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/line_editor.h"

namespace quenlatrix::host {

// Where the names come from that a statement may hold. Each is asked when its turn comes, on the
// thread that completes.
struct CompletionSource {
  std::function<std::vector<std::string>()> heldNames;
  std::function<std::vector<std::string>()> classNames;
  // As METHOD can name them with their types, such as "add(int, java.lang.Object)".
  std::function<std::vector<std::string>(const std::string& heldName)> methodsOf;
};

// Completes the last word of a statement by the statements' forms, such as "walk NAME [skip N]".
// A method goes by its name, behind "(" by its parameter types too.
Completion CompleteStatement(std::string_view beforeCursor, const std::vector<std::string>& forms,
                             const CompletionSource& source);

}  // namespace quenlatrix::host
