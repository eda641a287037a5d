#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

#include "host/value_ptr.h"
#include "meta_object/handler.h"
#include "meta_object/type_desc.h"

// Random texts and values, made from the fuzzer's bytes. For one thread.

// A short text of characters of every length in UTF-8, and of such as UTF-8 hasn't.
std::wstring MakeText(FuzzedDataProvider& data);

// A text that reads as a number or a truth in one of the two languages, or nearly does.
std::wstring MakeNumberText(FuzzedDataProvider& data);

// A value of the key's class, from the edges of its range or from anywhere in it: no structure and
// no array. An object value refers to `handler`, which may be null.
quenlatrix::host::ValuePtr MakeScalar(FuzzedDataProvider& data,
                                      quenlatrix::meta_object::TypeDesc::Key key,
                                      const quenlatrix::meta_object::Handler* handler);
