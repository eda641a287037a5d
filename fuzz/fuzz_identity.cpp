#include <fuzzer/FuzzedDataProvider.h>

#include <string>

#include "fuzz/require.h"
#include "meta_object/identity.h"

namespace {

using quenlatrix::meta_object::Identity;

std::string TextOf(const Identity& identity) {
  std::string text = identity.handler + "://" + identity.handlerData;
  for (const auto& attribute : identity.attributes) {
    text += "?" + attribute->name + "=" + attribute->value;
  }
  return text;
}

void RequireCanonical(const Identity& identity) {
  Require(identity.identity == TextOf(identity));
  Require(identity.core == identity.identity.substr(0, identity.identity.find('?')));
}

// What was read and written again reads the same, and writes the same.
void CheckReading(const std::string& text) {
  Identity first;
  first.SetIdentity(text);
  Require(first.identity == text);
  Require(!first.IsValid() || text.find("://") != std::string::npos);
  first.GenerateIdentity();
  RequireCanonical(first);
  Identity second;
  second.SetIdentity(first.identity);
  Require(second.handler == first.handler && second.handlerData == first.handlerData);
  Require(second.core == first.core && second.attributes.size() == first.attributes.size());
  RequireCanonical(second);
}

// A setter either refuses and changes nothing, or leaves text and parts in step.
void CheckSetters(Identity& identity, FuzzedDataProvider& input) {
  const Identity before = identity;
  const int setter = input.ConsumeIntegralInRange(0, 3);
  const std::string name = input.ConsumeRandomLengthString(32);
  const std::string value = setter == 2 ? input.ConsumeRandomLengthString(32) : std::string();
  const bool refused = identity.FindReservedTokens(name) || identity.FindReservedTokens(value);
  bool done = false;
  switch (setter) {
    case 0:
      done = identity.SetHandler(name);
      break;
    case 1:
      done = identity.SetHandlerData(name);
      break;
    case 2:
      done = identity.SetAttribute(name, value);
      Require(!done || identity.GetAttributeAsString(name) == value);
      break;
    default:
      done = identity.RemoveAttribute(name);
      Require(!done || identity.attributes.size() + 1 == before.attributes.size());
  }
  Require(!(refused && done));
  if (refused) {
    Require(identity.identity == before.identity && identity.core == before.core);
    Require(TextOf(identity) == TextOf(before));
  } else if (done) {
    RequireCanonical(identity);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  // Taken from the end of the input, so that a seed's text stands as it is.
  const int setters = input.ConsumeIntegralInRange(0, 7);
  const std::string text = input.ConsumeRandomLengthString();
  CheckReading(text);
  Identity identity;
  identity.SetIdentity(text);
  for (int i = 0; i < setters; ++i) {
    CheckSetters(identity, input);
  }
  return 0;
}
