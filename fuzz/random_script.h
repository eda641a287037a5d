#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

// A script made from the fuzzer's bytes: statements that suit what the names hold, among others
// that don't, and broken ones. None of them reaches out of the process, waits or makes much of
// little. For one thread.
std::string MakeScript(FuzzedDataProvider& data);
