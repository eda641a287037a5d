#include "tally_handler.h"

#include <algorithm>
#include <stdexcept>

#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"

namespace tally {

namespace {

using catalogue::Arguments;
using catalogue::Catalogue;
using catalogue::IntType;
using catalogue::TextArrayType;
using catalogue::TextOf;
using catalogue::TextType;
using catalogue::Value;
using catalogue::VoidType;
namespace type = quenlatrix::meta_object::type;

enum MethodPosition : std::size_t { kAdd, kAddAll, kClear, kCount };

const Catalogue& Methods() {
  static const Catalogue methods = {
      {L"add", IntType(), {{L"word", TextType()}}},
      {L"addAll", IntType(), {{L"words", TextArrayType()}}},
      {L"clear", VoidType(), {}},
      {L"count", IntType(), {{L"word", TextType()}}},
  };
  return methods;
}

std::wstring WordIn(const type::Object* value) {
  std::wstring word = TextOf(value);
  if (word.empty()) {
    throw std::invalid_argument("expected a word, found an empty text");
  }
  return word;
}

// Counts every word or, when one of them is none, nothing; how many were counted.
int AddAll(Tally& tally, const type::Object* value) {
  const auto* array = dynamic_cast<const type::Array*>(value);
  if (array == nullptr) {
    throw std::invalid_argument("expected an array of words");
  }
  std::vector<std::wstring> words(static_cast<std::size_t>(std::max(array->GetItemCount(), 0)));
  for (unsigned int i = 0; i < words.size(); ++i) {
    words[i] = WordIn(array->GetItemAt(i));
  }
  for (const std::wstring& word : words) {
    tally.Add(word);
  }
  return static_cast<int>(words.size());
}

}  // namespace

TallyHandler::TallyHandler() : CatalogueHandler(Methods()) {}

bool TallyHandler::MakeObject(const std::string& data) {
  tally = Tally::Open(data);
  return true;
}

Value TallyHandler::Call(std::size_t method, const Arguments& arguments) {
  switch (method) {
    case kAdd:
      return std::make_unique<type::Int>(tally->Add(WordIn(arguments[0])));
    case kAddAll:
      return std::make_unique<type::Int>(AddAll(*tally, arguments[0]));
    case kCount:
      return std::make_unique<type::Int>(tally->Count(WordIn(arguments[0])));
    default:
      tally->Clear();
      return nullptr;
  }
}

bool TallyHandler::GatherElements(std::vector<Value>& elements) {
  for (const std::wstring& word : tally->Words()) {
    auto element = std::make_unique<type::String>();
    element->SetValue(word.c_str());
    elements.push_back(std::move(element));
  }
  return true;
}

}  // namespace tally
