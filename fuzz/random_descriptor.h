#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include "meta_object/type_desc.h"

// A descriptor made from the fuzzer's bytes, with information of every kind, structures in it
// included, whose names hold no separators. For one thread.
quenlatrix::meta_object::TypeDesc MakeDescriptor(FuzzedDataProvider& data, int nesting = 0);
