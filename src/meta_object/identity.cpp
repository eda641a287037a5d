#include "meta_object/identity.h"

#include <algorithm>
#include <utility>

namespace quenlatrix::meta_object {

namespace {

constexpr std::string_view kHandlerEnd = "://";
constexpr char kAttributeStart = '?';
constexpr char kValueStart = '=';
constexpr char kWhiteSpace[] = " \t\n\v\f\r";

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualNames(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, {}, LowerAscii, LowerAscii);
}

// First attribute of that name, or the end.
template <typename Attributes>
auto FindByName(Attributes& attributes, std::string_view name) {
  return std::ranges::find_if(
      attributes, [name](const auto& attribute) { return EqualNames(attribute->name, name); });
}

}  // namespace

Identity::Attribute::Attribute(std::string name, std::string value)
    : name(std::move(name)), value(std::move(value)) {}

Identity::Attribute& Identity::Attribute::operator=(const Attribute& other) {
  Attribute copy(other);
  name.swap(copy.name);
  value.swap(copy.value);
  return *this;
}

Identity::Identity() = default;

Identity::Identity(const char* identity) { SetIdentity(identity); }

Identity::Identity(const char* handler, const char* handlerData) {
  if (handler != nullptr && !FindReservedTokens(handler)) {
    this->handler = handler;
  }
  if (handlerData != nullptr && !FindReservedTokens(handlerData)) {
    this->handlerData = handlerData;
  }
  GenerateIdentity();
}

Identity::~Identity() = default;

Identity::Identity(const Identity& other)
    : identity(other.identity),
      handler(other.handler),
      handlerData(other.handlerData),
      core(other.core) {
  attributes.reserve(other.attributes.size());
  for (const auto& attribute : other.attributes) {
    attributes.push_back(std::make_unique<Attribute>(*attribute));
  }
}

Identity& Identity::operator=(const Identity& other) {
  Identity copy(other);
  Swap(copy);
  return *this;
}

void Identity::Swap(Identity& other) noexcept {
  identity.swap(other.identity);
  SwapParts(other);
}

void Identity::SwapParts(Identity& other) noexcept {
  handler.swap(other.handler);
  handlerData.swap(other.handlerData);
  core.swap(other.core);
  attributes.swap(other.attributes);
}

// Both by way of a copy: the text may be one of this object's own.
void Identity::SetIdentity(const char* text) { Take(text == nullptr ? "" : text); }

void Identity::SetIdentity(const std::string& text) { Take(text); }

void Identity::Take(std::string text) {
  // Apart: memory that runs out leaves this object as it was.
  Identity taken;
  taken.identity = std::move(text);
  taken.ParseParts(taken.identity);
  Swap(taken);
}

bool Identity::ParseIdentity() {
  Identity parsed;
  const bool isWhole = parsed.ParseParts(identity);
  SwapParts(parsed);
  return isWhole;
}

bool Identity::ParseParts(std::string_view text) {
  const auto handlerEnd = text.find(kHandlerEnd);
  if (handlerEnd == std::string_view::npos) {
    return false;
  }
  core = text.substr(0, text.find(kAttributeStart));
  handler = text.substr(0, handlerEnd);
  const std::string_view rest = text.substr(handlerEnd + kHandlerEnd.size());
  const auto dataEnd = rest.find(kAttributeStart);
  handlerData = rest.substr(0, dataEnd);
  if (dataEnd != std::string_view::npos) {
    ParseAttributes(rest.substr(dataEnd + 1));
  }
  return true;
}

void Identity::ParseAttributes(std::string_view items) {
  for (bool last = false; !last;) {
    const auto itemEnd = items.find(kAttributeStart);
    const std::string_view item = items.substr(0, itemEnd);
    last = itemEnd == std::string_view::npos;
    items.remove_prefix(last ? items.size() : itemEnd + 1);

    const auto nameEnd = item.find(kValueStart);
    if (nameEnd == std::string_view::npos) {
      continue;
    }
    std::string name = TrimString(std::string(item.substr(0, nameEnd)));
    if (!name.empty()) {
      attributes.push_back(std::make_unique<Attribute>(
          std::move(name), TrimString(std::string(item.substr(nameEnd + 1)))));
    }
  }
}

void Identity::GenerateIdentity() {
  std::string text = handler;
  text += kHandlerEnd;
  text += handlerData;
  for (const auto& attribute : attributes) {
    text += kAttributeStart;
    text += attribute->name;
    text += kValueStart;
    text += attribute->value;
  }
  std::string start = text.substr(0, text.find(kAttributeStart));
  identity.swap(text);
  core.swap(start);
}

void Identity::ChangePart(std::string& part, std::string text) {
  part.swap(text);
  try {
    GenerateIdentity();
  } catch (...) {
    part.swap(text);
    throw;
  }
}

void Identity::GenerateCore() { core = identity.substr(0, identity.find(kAttributeStart)); }

bool Identity::SetHandler(const std::string& text) {
  if (FindReservedTokens(text)) {
    return false;
  }
  ChangePart(handler, text);
  return true;
}

bool Identity::SetHandlerData(const std::string& text) {
  if (FindReservedTokens(text)) {
    return false;
  }
  ChangePart(handlerData, text);
  return true;
}

bool Identity::SetAttribute(const std::string& name, const std::string& value) {
  if (FindReservedTokens(name) || FindReservedTokens(value)) {
    return false;
  }
  if (Attribute* const attribute = FindAttribute(name)) {
    ChangePart(attribute->value, value);
    return true;
  }
  const std::size_t before = attributes.size();
  if (!name.empty()) {
    attributes.push_back(std::make_unique<Attribute>(name, value));
  }
  try {
    GenerateIdentity();
  } catch (...) {
    attributes.resize(before);
    throw;
  }
  return !name.empty();
}

bool Identity::RemoveAttribute(const std::string& name) {
  const auto found = FindByName(attributes, name);
  if (FindReservedTokens(name) || found == attributes.end()) {
    return false;
  }
  const auto place = found - attributes.begin();
  std::unique_ptr<Attribute> removed = std::move(*found);
  attributes.erase(found);
  try {
    GenerateIdentity();
  } catch (...) {
    // Its place is still allocated.
    attributes.insert(attributes.begin() + place, std::move(removed));
    throw;
  }
  return true;
}

const std::string& Identity::GetAttributeAsString(const std::string& name) const {
  static const std::string empty;
  const Attribute* const attribute = FindAttribute(name);
  return attribute != nullptr ? attribute->value : empty;
}

Identity::Attribute* Identity::FindAttribute(const std::string& name) const {
  const auto found = FindByName(attributes, name);
  return found != attributes.end() ? found->get() : nullptr;
}

bool Identity::FindReservedTokens(const std::string& text) const {
  return text.find(kHandlerEnd) != std::string::npos ||
         text.find(kAttributeStart) != std::string::npos ||
         text.find(kValueStart) != std::string::npos;
}

std::string Identity::TrimString(std::string text) const {
  const auto last = text.find_last_not_of(kWhiteSpace);
  if (last == std::string::npos) {
    return text;
  }
  text.erase(last + 1);
  text.erase(0, text.find_first_not_of(kWhiteSpace));
  return text;
}

std::string::size_type Identity::FindWhiteSpace(const std::string& text) const {
  return text.find_first_of(kWhiteSpace);
}

std::string::size_type Identity::ReverseFindWhiteSpace(const std::string& text) const {
  return text.find_last_of(kWhiteSpace);
}

bool Identity::IsValid() const {
  return !identity.empty() && !handler.empty() && !handlerData.empty();
}

void Identity::Clear() {
  identity.clear();
  handler.clear();
  handlerData.clear();
  core.clear();
  attributes.clear();
}

}  // namespace quenlatrix::meta_object
