#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "collect/attribute.h"
#include "meta_object/environment.h"
#include "meta_object/identity.h"
#include "meta_object/info/property.h"
#include "meta_object/type_desc.h"
#include "tests/support/refused_allocations.h"

namespace quenlatrix::meta_object {
namespace {

using test::RunsOutOfMemory;

// Does `change` to what `make` makes, with each of its allocations refused in turn, and sees that
// the text of it is either the old one, after a failure, or the new one.
template <class Subject>
void ChangesWhollyOrNotAtAll(const std::function<std::unique_ptr<Subject>()>& make,
                             const std::function<void(Subject&)>& change,
                             const std::function<std::string(const Subject&)>& textOf) {
  const auto changed = make();
  const std::string before = textOf(*changed);
  change(*changed);
  const std::string after = textOf(*changed);
  ASSERT_NE(before, after);
  bool isRefused = true;
  for (int granted = 0; isRefused; ++granted) {
    const auto subject = make();
    isRefused = RunsOutOfMemory(granted, [&] { change(*subject); });
    EXPECT_EQ(textOf(*subject), isRefused ? before : after) << "allocation " << granted;
  }
}

constexpr char kLong[] = "a text that is too long to be kept without an allocation";

TEST(LackOfMemory, LeavesAnIdentityAsItWas) {
  const std::function<void(Identity&)> changes[] = {
      [](Identity& id) { id.SetHandler(kLong); },
      [](Identity& id) { id.SetHandlerData(kLong); },
      [](Identity& id) { id.SetAttribute("name", kLong); },
      [](Identity& id) { id.SetAttribute(kLong, kLong); },
      [](Identity& id) { id.RemoveAttribute("name"); },
      [](Identity& id) { id.SetIdentity(std::string("X://") + kLong); },
      [](Identity& id) { *id.attributes[0] = Identity::Attribute(kLong, kLong); },
  };
  const auto make = [] {
    return std::make_unique<Identity>("JAVABEAN://a.Bean?name=value?second=2");
  };
  const auto textOf = [](const Identity& id) {
    std::string text = id.identity + "|" + id.handler + "|" + id.handlerData + "|" + id.core;
    for (const auto& attribute : id.attributes) {
      text += "|" + attribute->name + "=" + attribute->value;
    }
    return text;
  };
  for (const auto& change : changes) {
    ChangesWhollyOrNotAtAll<Identity>(make, change, textOf);
  }
  const auto makeUnparsed = [make] {
    auto id = make();
    id->identity = std::string("X://") + kLong + "?" + kLong + "=1?third=" + kLong;
    return id;
  };
  ChangesWhollyOrNotAtAll<Identity>(
      makeUnparsed, [](Identity& id) { id.ParseIdentity(); }, textOf);
}

TEST(LackOfMemory, LeavesAnEnvironmentAndAttributesAsTheyWere) {
  Environment source;
  source.textList.emplace_back(kLong);
  source.attributes.push_back(
      std::make_unique<Handler::Attribute>(ZuText("handler"), ZuText("key"), ZuText(kLong)));
  source.firstWideText.assign(L"first");
  source.secondWideText.assign(L"second");
  ChangesWhollyOrNotAtAll<Environment>(
      [] {
        auto target = std::make_unique<Environment>();
        target->textList.emplace_back("old");
        target->firstWideText.assign(L"old");
        return target;
      },
      [&](Environment& target) { target = source; },
      [](const Environment& env) {
        std::string text;
        for (const ZuText& entry : env.textList) text += entry.GetTextEx();
        for (const auto& a : env.attributes) {
          text +=
              std::string(a->handlerName.GetTextEx()) + a->key.GetTextEx() + a->value.GetTextEx();
        }
        for (const WideString* wide : {&env.firstWideText, &env.secondWideText}) {
          if (wide->getWCharPtr() != nullptr) text += static_cast<char>(*wide->getWCharPtr());
        }
        return text;
      });

  const ZuText text(kLong);
  const Handler::Attribute other(text, text, text);
  ChangesWhollyOrNotAtAll<Handler::Attribute>(
      [] { return std::make_unique<Handler::Attribute>(ZuText("h"), ZuText("k"), ZuText("v")); },
      [&](Handler::Attribute& target) { target = other; },
      [](const Handler::Attribute& a) {
        return std::string(a.handlerName.GetTextEx()) + a.key.GetTextEx() + a.value.GetTextEx();
      });

  const collect::Attribute pair(kLong, kLong);
  ChangesWhollyOrNotAtAll<collect::Attribute>(
      [] { return std::make_unique<collect::Attribute>("k", "v"); },
      [&](collect::Attribute& target) { target = pair; },
      [](const collect::Attribute& a) {
        return std::string(a.key.GetTextEx()) + a.value.GetTextEx();
      });
}

TEST(LackOfMemory, LeavesADescriptorAsItWas) {
  const auto makeFrom = [](const wchar_t* text) {
    return [text] {
      auto desc = std::make_unique<TypeDesc>();
      desc->Deserialize(text);
      return desc;
    };
  };
  const auto textOf = [](const TypeDesc& desc) {
    WideString wide;
    desc.Serialize(wide);
    const std::wstring_view view(wide.getWCharPtr());
    return std::string(view.begin(), view.end());
  };
  const auto makeStruct = makeFrom(L"old,type%%Struct{[T]x,y%%Real}");
  for (const wchar_t* const text :
       {L"d,t%%detail%%Enum{A=1,B=2}", L"d,t%%Array{0,1:0,2}", L"d,t%%Struct{[S]a,int%%Int}"}) {
    const auto other = makeFrom(text)();
    ChangesWhollyOrNotAtAll<TypeDesc>(
        makeStruct, [text](TypeDesc& desc) { desc.Deserialize(text); }, textOf);
    ChangesWhollyOrNotAtAll<TypeDesc>(
        makeStruct, [&](TypeDesc& desc) { desc = *other; }, textOf);
  }
  const auto structure = makeFrom(L",%%Struct{[U]z,z%%Int}")();
  ChangesWhollyOrNotAtAll<TypeDesc>(
      makeStruct, [&](TypeDesc& desc) { *desc.structInfo = *structure->structInfo; }, textOf);
  const auto items = makeFrom(L"Enum{C=3,D=4}")();
  ChangesWhollyOrNotAtAll<TypeDesc>(
      makeFrom(L"Enum{A=1,B=2}"), [&](TypeDesc& desc) { *desc.enumInfo = *items->enumInfo; },
      textOf);
}

// Fields that are written one after the other.
TEST(LackOfMemory, LeavesARecordAsItWas) {
  const Property other(L"other name", L"other value", false);
  ChangesWhollyOrNotAtAll<Property>(
      [] { return std::make_unique<Property>(L"name", L"value", true); },
      [&](Property& property) { property = other; },
      [](const Property& property) {
        return std::string(property.name.getCharPtr()) + property.value.getCharPtr() +
               (property.flag ? "+" : "-");
      });
}

}  // namespace
}  // namespace quenlatrix::meta_object
