#include <gmock/gmock.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "meta_object/array_iterator.h"
#include "meta_object/environment.h"
#include "meta_object/handler_registry.h"
#include "meta_object/info/cached_method_info.h"
#include "meta_object/info/handler_info.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/info/property.h"
#include "meta_object/info/security_info.h"
#include "meta_object/type/array.h"
#include "meta_object/type/blob.h"
#include "meta_object/type/scalar_values.h"
#include "tests/meta_object/test_handler.h"
#include "tests/support/binary_layout.h"

// Hosts are built apart from the library: they reach virtual operations by slot and fields by
// offset. A failure here means that every host would have to be built anew.
namespace quenlatrix::meta_object {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

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
              ElementsAreArray(SlotsFrom(0, 5)));
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
              ElementsAreArray(SlotsFrom(7, 40)));
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
      ElementsAreArray(SlotsFrom(2, 31)));
}

TEST(BinaryContract, RegistryEntriesKeepTheirSlotsAndFields) {
  using R = Handler::Enum;
  EXPECT_THAT(SlotsOf(&R::GetFirst, &R::GetNext, &R::IsRegistryAvailable, &R::GetRegistryName),
              ElementsAreArray(SlotsFrom(2, 4)));
  EXPECT_EQ(sizeof(R), 8 + 8 + 24 + 8U);
  using I = Handler::EnumInfo;
  const std::ptrdiff_t text = sizeof(ZuText);
  const std::ptrdiff_t behind = 8 + 4 * text;
  EXPECT_THAT(LayoutOf<I>(&I::shortName, &I::handlerName, &I::description, &I::serverPath,
                          &I::supportsScanning, &I::loadHandler, &I::attributes),
              ElementsAre(8, 8 + text, 8 + 2 * text, 8 + 3 * text, behind, behind + 1, behind + 8,
                          behind + 32));
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

TEST(BinaryContract, FieldsKeepTheirPlaces) {
  using H = HandlerProbe;
  const auto identityAt = static_cast<std::ptrdiff_t>(16 + sizeof(Mutex));
  EXPECT_THAT(LayoutOf<Handler>(&H::referenceCount, &H::objectLock, &H::objectIdentity),
              ElementsAre(8, 16, identityAt, identityAt + sizeof(Identity)));
  using A = Handler::Attribute;
  EXPECT_THAT(LayoutOf<A>(&A::key, &A::value, &A::handlerName),
              ElementsAre(8, 8 + sizeof(ZuText), 8 + 2 * sizeof(ZuText), 8 + 3 * sizeof(ZuText)));
  using E = Environment;
  EXPECT_THAT(
      LayoutOf<E>(&E::hostContext, &E::textList, &E::attributes, &E::hostFlag, &E::firstWideText,
                  &E::secondWideText, &E::cacheOpenIntrospect, &E::cacheIntrospectDone,
                  &E::cacheCloseIntrospect, &E::cacheAddMethodInfo, &E::cacheGetMethodInfo,
                  &E::cacheGetObjectInfo, &E::gcRegHandlerObject, &E::checkSecurity),
      ElementsAre(0, 8, 32, 56, 64, 80, 96, 104, 112, 120, 128, 136, 144, 152, 160));
  using Status = MethodInvokeStatus;
  EXPECT_THAT(LayoutOf<Status>(&Status::statusCode, &Status::description, &Status::failureText),
              ElementsAre(0, 8, 24, 40));
  EXPECT_EQ(LayoutOf<context::MethodCallContext>(&context::MethodCallContext::call)[0], 0);
  EXPECT_EQ(LayoutOf<context::CollectionContext>(&context::CollectionContext::walk)[0], 0);
  using P = ObjectProbe;
  EXPECT_THAT(
      LayoutOf<type::Object>(&P::paramName, &P::tag, &P::direction, &P::optional,
                             &P::optionalNotSpecified, &P::invoke, &P::variant, &P::paramEmpty,
                             &P::typeDesc, &P::valueFormat),
      ElementsAre(8, 24, 40, 44, 45, 46, 47, 48, 56, 56 + sizeof(TypeDesc), 72 + sizeof(TypeDesc)));
}

TEST(BinaryContract, NumbersHoldFormatAndValueWhereHostsReadThem) {
  const std::size_t format = sizeof(type::Object) - 16;
  const type::Int number(42);
  EXPECT_EQ(FieldAt<long>(type::Int(number), sizeof(type::Object)), 42);
  EXPECT_STREQ(FieldAt<const wchar_t*>(type::Int(number), format), L"%d");
  EXPECT_EQ(FieldAt<double>(type::Real(1.5), sizeof(type::Object)), 1.5);
  EXPECT_STREQ(FieldAt<const wchar_t*>(type::Real(1.5), format), L"%f");
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

TEST(BinaryContract, RecordsKeepTheirFields) {
  using T = TypeDesc;
  EXPECT_THAT(LayoutOf<T>(&T::enumInfo, &T::arrayInfo, &T::structInfo, &T::key, &T::refType,
                          &T::displayName, &T::typeName, &T::detail),
              ElementsAre(8, 16, 24, 32, 36, 40, 56, 72, 88));
  using P = Property;
  EXPECT_THAT(LayoutOf<P>(&P::name, &P::code, &P::value, &P::number, &P::flag),
              ElementsAre(8, 24, 32, 48, 56, 64));
  using O = info::ObjectInfo;
  EXPECT_THAT(
      LayoutOf<O>(&O::infoKind, &O::description, &O::flagA, &O::flagB, &O::note, &O::properties),
      ElementsAre(8, 16, 32, 33, 40, 56, 80));
  using A = info::ParamInfo;
  EXPECT_THAT(LayoutOf<A>(&A::reserved, &A::context, &A::methodId, &A::index, &A::name, &A::type,
                          &A::direction, &A::option1, &A::option2),
              ElementsAre(8, 16, 24, 40, 48, 64, 152, 156, 157, 160));
  using M = info::MethodInfo;
  EXPECT_THAT(LayoutOf<M>(&M::reserved, &M::context, &M::methodId, &M::name, &M::returnType,
                          &M::methodType, &M::paramCount, &M::description),
              ElementsAre(8, 16, 24, 40, 56, 144, 148, 152, 168));
  using C = info::cache::CachedMethodInfo;
  EXPECT_THAT(LayoutOf<C>(&C::name, &C::altName, &C::description, &C::returnType, &C::methodType,
                          &C::params),
              ElementsAre(0, 16, 32, 48, 136, 144, 152));
  using D = info::cache::CachedParamInfo;
  EXPECT_THAT(LayoutOf<D>(&D::name, &D::type, &D::direction, &D::option1, &D::option2),
              ElementsAre(0, 16, 104, 108, 109, 112));
  using S = info::SecurityInfo;
  EXPECT_THAT(LayoutOf<S>(&S::firstValue, &S::secondValue), ElementsAre(8, 40, 72));
  using H = info::HandlerInfo;
  EXPECT_THAT(LayoutOf<H>(&H::handlerName, &H::handlerType, &H::description, &H::serverPath,
                          &H::serverDirectory, &H::firstReserved, &H::secondReserved),
              ElementsAre(8, 24, 40, 56, 72, 88, 96, 104));
}

TEST(BinaryContract, HandlerInfoAnswersThroughItsSlotsInOrder) {
  info::HandlerInfo info;
  info.handlerName = L"name";
  info.handlerType = L"type";
  info.description = L"description";
  info.serverPath = L"path";
  info.serverDirectory = L"directory";
  using Getter = const char* (*)(const info::HandlerInfo*);
  const Getter* slots = nullptr;
  std::memcpy(&slots, static_cast<const void*>(&info), sizeof(slots));
  const std::vector<const char*> expected = {"name", "type", "description", "path", "directory"};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_STREQ(slots[2 + i](&info), expected[i])
        << "behind the destructor's two slots, slot " << i;
  }
  EXPECT_EQ(info::HandlerInfo().GetServerPath(), nullptr);
}

}  // namespace
}  // namespace quenlatrix::meta_object
