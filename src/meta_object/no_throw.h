#pragma once

#include <utility>

namespace quenlatrix::meta_object {

// Runs `work` and gives its answer, or `failure` when it throws. The host and its handlers may be
// built by different compilers, so no exception may cross an operation that the host calls.
template <class Result, class Work>
Result NoThrow(Result failure, Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    return failure;
  }
}

// The same for work without an answer.
template <class Work>
void NoThrow(Work&& work) noexcept {
  try {
    std::forward<Work>(work)();
  } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody to tell
  }
}

}  // namespace quenlatrix::meta_object
