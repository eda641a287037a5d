#pragma once

#include <string>
#include <vector>

#include "fuzz/echo_kinds.h"
#include "host/bean_object.h"
#include "meta_object/type/object.h"

// What a value has to be after its way to an echoing Java method and back, worked out from the
// conversions' rules alone, as texts that can be compared. For the fuzzer's thread alone.

// The beans that object values refer to.
std::vector<quenlatrix::host::BeanObject>& GetPoints();

// A value, element by element; "null" for none.
std::string Show(const quenlatrix::meta_object::type::Object* value, const EchoKind& kind);

// What a call with that parameter gives: a value as shown, "null" or "refused".
std::string Expect(const quenlatrix::meta_object::type::Object& value, const EchoKind& kind);
