#include <gmock/gmock.h>

#include <cstring>
#include <vector>

#include "meta_object/info/cached_method_info.h"
#include "meta_object/info/handler_info.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/info/property.h"
#include "meta_object/info/security_info.h"
#include "meta_object/type_desc.h"
#include "tests/support/binary_layout.h"

namespace quenlatrix::meta_object::info {
namespace {

using ::testing::ElementsAre;

TEST(RecordLayout, FieldsStandWhereHostsReadThem) {
  using T = TypeDesc;
  EXPECT_THAT(LayoutOf<T>(&T::enumInfo, &T::arrayInfo, &T::structInfo, &T::key, &T::refType,
                          &T::displayName, &T::typeName, &T::detail),
              ElementsAre(8, 16, 24, 32, 36, 40, 56, 72, 88));
  using P = Property;
  EXPECT_THAT(LayoutOf<P>(&P::name, &P::code, &P::value, &P::number, &P::flag),
              ElementsAre(8, 24, 32, 48, 56, 64));
  using O = ObjectInfo;
  EXPECT_THAT(
      LayoutOf<O>(&O::infoKind, &O::description, &O::flagA, &O::flagB, &O::note, &O::properties),
      ElementsAre(8, 16, 32, 33, 40, 56, 80));
  using A = ParamInfo;
  EXPECT_THAT(LayoutOf<A>(&A::reserved, &A::context, &A::methodId, &A::index, &A::name, &A::type,
                          &A::direction, &A::option1, &A::option2),
              ElementsAre(8, 16, 24, 40, 48, 64, 152, 156, 157, 160));
  using M = MethodInfo;
  EXPECT_THAT(LayoutOf<M>(&M::reserved, &M::context, &M::methodId, &M::name, &M::returnType,
                          &M::methodType, &M::paramCount, &M::description),
              ElementsAre(8, 16, 24, 40, 56, 144, 148, 152, 168));
  using C = cache::CachedMethodInfo;
  EXPECT_THAT(LayoutOf<C>(&C::name, &C::altName, &C::description, &C::returnType, &C::methodType,
                          &C::params),
              ElementsAre(0, 16, 32, 48, 136, 144, 152));
  using D = cache::CachedParamInfo;
  EXPECT_THAT(LayoutOf<D>(&D::name, &D::type, &D::direction, &D::option1, &D::option2),
              ElementsAre(0, 16, 104, 108, 109, 112));
  using S = SecurityInfo;
  EXPECT_THAT(LayoutOf<S>(&S::firstValue, &S::secondValue), ElementsAre(8, 40, 72));
  using H = HandlerInfo;
  EXPECT_THAT(LayoutOf<H>(&H::handlerName, &H::handlerType, &H::description, &H::serverPath,
                          &H::serverDirectory, &H::firstReserved, &H::secondReserved),
              ElementsAre(8, 24, 40, 56, 72, 88, 96, 104));
}

TEST(RecordLayout, HandlerInfoAnswersThroughItsSlotsInOrder) {
  HandlerInfo info;
  info.handlerName = L"name";
  info.handlerType = L"type";
  info.description = L"description";
  info.serverPath = L"path";
  info.serverDirectory = L"directory";
  using Getter = const char* (*)(const HandlerInfo*);
  const Getter* slots = nullptr;
  std::memcpy(&slots, static_cast<const void*>(&info), sizeof(slots));
  const std::vector<const char*> expected = {"name", "type", "description", "path", "directory"};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_STREQ(slots[2 + i](&info), expected[i])
        << "behind the destructor's two slots, slot " << i;
  }
  EXPECT_EQ(HandlerInfo().GetServerPath(), nullptr);
}

}  // namespace
}  // namespace quenlatrix::meta_object::info
