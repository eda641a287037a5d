#include <gmock/gmock.h>

#include <cstddef>
#include <cstring>
#include <numeric>
#include <vector>

#include "meta_object/array_iterator.h"
#include "meta_object/environment.h"
#include "meta_object/type/array.h"
#include "meta_object/type/blob.h"
#include "meta_object/type/scalar_values.h"
#include "tests/meta_object/test_handler.h"

// Hosts are built apart from the library: they reach virtual operations by slot and fields by
// offset. A failure here means that every host would have to be built anew.
namespace quenlatrix::meta_object {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// A pointer to a virtual member holds one more than its entry's offset in the table.
template <class Member>
std::ptrdiff_t SlotOf(Member member) {
  std::ptrdiff_t entry = 0;
  std::memcpy(&entry, &member, sizeof(entry));
  return entry % 8 == 1 ? (entry - 1) / 8 : -1;
}

template <class... Members>
std::vector<std::ptrdiff_t> SlotsOf(Members... members) {
  return {SlotOf(members)...};
}

std::vector<std::ptrdiff_t> Slots(std::ptrdiff_t first, std::ptrdiff_t last) {
  std::vector<std::ptrdiff_t> slots(static_cast<std::size_t>(last - first + 1));
  std::iota(slots.begin(), slots.end(), first);
  return slots;
}

// What an object holds at `offset`, for fields that nobody else may name.
template <class Value, class Whole>
Value FieldAt(const Whole& whole, std::size_t offset) {
  alignas(Value) char bytes[sizeof(Value)];
  std::memcpy(bytes, reinterpret_cast<const char*>(&whole) + offset, sizeof(Value));
  return *reinterpret_cast<Value*>(bytes);
}

struct HandlerProbe : TestHandler {
  using Handler::CreateObjectImp;
  using Handler::IsValidObjectImp;
  using Handler::objectIdentity;
  using Handler::objectLock;
  using Handler::OnConstructObject;
  using Handler::OnDestructObject;
  using Handler::referenceCount;
  using Handler::ReleaseObjectImp;
};

template <class Record>
constexpr auto kReleases = static_cast<void (Handler::*)(Record*)>(&Handler::Release);

TEST(BinaryContract, HandlerHooksTakeTheFirstSlots) {
  using Probe = HandlerProbe;
  EXPECT_THAT(SlotsOf(&Probe::CreateObjectImp, &Probe::ReleaseObjectImp, &Probe::OnConstructObject,
                      &Probe::OnDestructObject, &Probe::IsValidObjectImp),
              ElementsAreArray(Slots(0, 4)));
}

TEST(BinaryContract, HandlerOperationsKeepTheirSlotsBehindTheDestructors) {
  using H = Handler;
  EXPECT_THAT(SlotsOf(&H::SetObjectIdentity, &H::IsValidObject, &H::CreateObject, &H::AddRef,
                      static_cast<HandlerStatus (H::*)()>(&H::Release), &H::GetReferenceCount,
                      &H::IsHandlerAvailable, static_cast<void* (H::*)()>(&H::GetObjectRef),
                      static_cast<const void* (H::*)() const>(&H::GetObjectRef), &H::OpenIntrospect,
                      &H::CloseIntrospect, &H::GetMethodIDs, &H::GetMethodCount, &H::GetMethodInfo,
                      &H::GetParamInfo, &H::GetObjectInfo, &H::ParseMethodID, &H::BuildMethodID,
                      &H::BuildNativeType, &H::OpenMethodCall, &H::PrepareMethodCall,
                      &H::SetReturnDataType, &H::InvokeMethod, &H::CloseMethodCall,
                      &H::OpenCollection, &H::ResetCollection, &H::GetNextItems, &H::SkipItems,
                      &H::GetCollectionSize, &H::CloseCollection, &H::GetErrorText,
                      kReleases<std::list<WideString>>, kReleases<std::list<info::MethodInfo*>>,
                      kReleases<std::list<type::Object*>>, kReleases<std::list<info::ParamInfo*>>,
                      kReleases<info::MethodInfo>, kReleases<type::Object>,
                      kReleases<info::ParamInfo>, kReleases<info::ObjectInfo>, &H::GetHandlerInfo),
              ElementsAreArray(Slots(7, 46)));
}

TEST(BinaryContract, ValueOperationsKeepTheirSlotsBehindTheDestructors) {
  using O = type::Object;
  EXPECT_THAT(
      SlotsOf(&O::ReleaseItem, &O::Clone,
              static_cast<const TypeDesc& (O::*)() const>(&O::GetMetaItemType),
              static_cast<TypeDesc& (O::*)()>(&O::GetMetaItemType), &O::IsType, &O::GetDesc,
              &O::SetDesc, &O::GetValueAsString, &O::SetValueAsString, &O::GetValueAsText,
              &O::SetValueAsText, &O::SetParamName, &O::GetParamName, &O::SetTag, &O::GetTag,
              &O::SetDirection, &O::GetDirection, &O::IsTagged, &O::IsMarloVariable, &O::IsOptional,
              &O::SetOptional, &O::SetOptionalNotSpecified, &O::IsOptionalNotSpecified,
              &O::SetParamEmptyFlag, &O::IsParamEmptyFlagSet, &O::CanInvoke, &O::SetInvoke,
              &O::IsVariant, &O::SetVariant, &O::GetNameAndScope, &O::SetNameAndScope),
      ElementsAreArray(Slots(2, 32)));
}

TEST(BinaryContract, HandlerFieldsKeepTheirPlaces) {
  EXPECT_EQ(offsetof(HandlerProbe, referenceCount), 8U);
  EXPECT_EQ(offsetof(HandlerProbe, objectLock), 16U);
  EXPECT_EQ(offsetof(HandlerProbe, objectIdentity), 16U + sizeof(Mutex));
  EXPECT_EQ(sizeof(Handler), 16U + sizeof(Mutex) + sizeof(Identity));
  using Attribute = Handler::Attribute;
  EXPECT_THAT((std::vector{offsetof(Attribute, key), offsetof(Attribute, value),
                           offsetof(Attribute, handlerName)}),
              ElementsAre(8U, 8U + sizeof(ZuText), 8U + 2 * sizeof(ZuText)));
}

TEST(BinaryContract, EnvironmentFieldsKeepTheirPlaces) {
  using E = Environment;
  EXPECT_THAT(
      (std::vector{offsetof(E, hostContext), offsetof(E, textList), offsetof(E, attributes),
                   offsetof(E, hostFlag), offsetof(E, firstWideText), offsetof(E, secondWideText),
                   offsetof(E, cacheOpenIntrospect), offsetof(E, cacheIntrospectDone),
                   offsetof(E, cacheCloseIntrospect), offsetof(E, cacheAddMethodInfo),
                   offsetof(E, cacheGetMethodInfo), offsetof(E, cacheGetObjectInfo),
                   offsetof(E, gcRegHandlerObject), offsetof(E, checkSecurity), sizeof(E)}),
      ElementsAre(0, 8, 32, 56, 64, 80, 96, 104, 112, 120, 128, 136, 144, 152, 160));
}

TEST(BinaryContract, ContextsBeginWithTheHandlersState) {
  EXPECT_EQ(offsetof(context::MethodCallContext, call), 0U);
  EXPECT_EQ(offsetof(context::CollectionContext, walk), 0U);
  using Status = MethodInvokeStatus;
  EXPECT_THAT((std::vector{offsetof(Status, statusCode), offsetof(Status, description),
                           offsetof(Status, failureText), sizeof(Status)}),
              ElementsAre(0, 8, 24, 40));
}

struct ObjectProbe : type::Int {
  using Object::direction;
  using Object::invoke;
  using Object::optional;
  using Object::optionalNotSpecified;
  using Object::paramEmpty;
  using Object::paramName;
  using Object::tag;
  using Object::typeDesc;
  using Object::valueFormat;
  using Object::variant;
};

TEST(BinaryContract, ValueFieldsKeepTheirPlaces) {
  using P = ObjectProbe;
  EXPECT_THAT((std::vector{offsetof(P, paramName), offsetof(P, tag), offsetof(P, direction),
                           offsetof(P, optional), offsetof(P, optionalNotSpecified),
                           offsetof(P, invoke), offsetof(P, variant), offsetof(P, paramEmpty),
                           offsetof(P, typeDesc), offsetof(P, valueFormat)}),
              ElementsAre(8, 24, 40, 44, 45, 46, 47, 48, 56, 56 + sizeof(TypeDesc)));
  EXPECT_EQ(sizeof(type::Object), 72 + sizeof(TypeDesc));
  const type::Int number(42);
  EXPECT_EQ(FieldAt<long>(type::Int(number), sizeof(type::Object)), 42);
  EXPECT_STREQ(FieldAt<const wchar_t*>(type::Int(number), offsetof(P, valueFormat)), L"%d");
  EXPECT_EQ(FieldAt<double>(type::Real(1.5), sizeof(type::Object)), 1.5);
  EXPECT_STREQ(FieldAt<const wchar_t*>(type::Real(1.5), offsetof(P, valueFormat)), L"%f");
}

TEST(BinaryContract, ArraysBlobsAndIteratorsKeepTheirFields) {
  TypeDesc desc(TypeDesc::Key::Int, TypeDesc::RefType::ByValue, true);
  desc.arrayInfo->AddDimensionInfo(0, 3);
  type::Array array;
  array.Create(desc);
  array.SetDesc(WideString("text"));
  type::Int item(1);
  array.SetItemAt(&item, 0);
  const std::size_t added = sizeof(type::Object);
  EXPECT_EQ(FieldAt<type::Object**>(array, added)[0], &item);
  EXPECT_EQ(FieldAt<std::int32_t>(array, added + 8), 3);
  EXPECT_STREQ(FieldAt<const wchar_t*>(array, added + 16), L"text");
  EXPECT_EQ(sizeof(type::Array), added + 16 + sizeof(WideString));
  array.SetItemAt(nullptr, 0);

  TestHandler handler;
  EXPECT_EQ(FieldAt<Handler*>(type::Blob(&handler), added), &handler);
  EXPECT_EQ(sizeof(type::Blob), added + 8);

  int lower = 0;
  int upper = 0;
  int current = 0;
  MultidimensionalArrayIterator it(1, &lower, &upper, &current);
  it.Next();
  it.EOA();
  EXPECT_EQ(FieldAt<std::uint32_t>(it, 0), 1U);
  EXPECT_EQ(FieldAt<std::uint32_t>(it, 4), 1U);
  EXPECT_TRUE(FieldAt<bool>(it, 8));
  EXPECT_EQ(FieldAt<int*>(it, 16), &lower);
  EXPECT_EQ(FieldAt<int*>(it, 24), &upper);
  EXPECT_EQ(FieldAt<int*>(it, 32), &current);
}

}  // namespace
}  // namespace quenlatrix::meta_object
