#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

#include "fuzz/require.h"
#include "text/zu_text_local.h"

// Shared by the sources of fuzz_text_operations. Threads: none but the fuzzer's.

// A short text without NULs.
inline std::string TakeText(FuzzedDataProvider& input) {
  return input.ConsumeRandomLengthString(60).c_str();
}

// A text, what it must hold, and a fixed text that goes through the same operations.
struct NarrowState {
  ZuText text;
  ZuTextLocal<31> fixed;
  std::string model;

  template <typename Operation>
  void Both(Operation operation) {
    operation(static_cast<ZuText&>(fixed));
    operation(text);
  }
};

// Edits both texts and the model; a fixed text in which there is room must agree, too.
void EditText(NarrowState& s, FuzzedDataProvider& input);

// Asks questions that leave the texts as they are.
void AskText(NarrowState& s, FuzzedDataProvider& input);
