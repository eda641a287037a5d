#include <gtest/gtest.h>

#include <cstddef>
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

namespace quenlatrix::meta_object::info {
namespace {

using cache::CachedMethodInfo;
using cache::CachedParamInfo;

struct Place {
  const char* what;
  std::size_t found;
  std::size_t expected;
};

TEST(RecordLayout, FieldsStandWhereHostsReadThem) {
  const std::vector<Place> places = {
      {"TypeDesc::enumInfo", offsetof(TypeDesc, enumInfo), 8},
      {"TypeDesc::arrayInfo", offsetof(TypeDesc, arrayInfo), 16},
      {"TypeDesc::structInfo", offsetof(TypeDesc, structInfo), 24},
      {"TypeDesc::key", offsetof(TypeDesc, key), 32},
      {"TypeDesc::refType", offsetof(TypeDesc, refType), 36},
      {"TypeDesc::displayName", offsetof(TypeDesc, displayName), 40},
      {"TypeDesc::typeName", offsetof(TypeDesc, typeName), 56},
      {"TypeDesc::detail", offsetof(TypeDesc, detail), 72},
      {"TypeDesc", sizeof(TypeDesc), 88},
      {"Property::name", offsetof(Property, name), 8},
      {"Property::code", offsetof(Property, code), 24},
      {"Property::value", offsetof(Property, value), 32},
      {"Property::number", offsetof(Property, number), 48},
      {"Property::flag", offsetof(Property, flag), 56},
      {"Property", sizeof(Property), 64},
      {"ObjectInfo::infoKind", offsetof(ObjectInfo, infoKind), 8},
      {"ObjectInfo::description", offsetof(ObjectInfo, description), 16},
      {"ObjectInfo::flagA", offsetof(ObjectInfo, flagA), 32},
      {"ObjectInfo::flagB", offsetof(ObjectInfo, flagB), 33},
      {"ObjectInfo::note", offsetof(ObjectInfo, note), 40},
      {"ObjectInfo::properties", offsetof(ObjectInfo, properties), 56},
      {"ObjectInfo", sizeof(ObjectInfo), 80},
      {"ParamInfo::reserved", offsetof(ParamInfo, reserved), 8},
      {"ParamInfo::context", offsetof(ParamInfo, context), 16},
      {"ParamInfo::methodId", offsetof(ParamInfo, methodId), 24},
      {"ParamInfo::index", offsetof(ParamInfo, index), 40},
      {"ParamInfo::name", offsetof(ParamInfo, name), 48},
      {"ParamInfo::type", offsetof(ParamInfo, type), 64},
      {"ParamInfo::direction", offsetof(ParamInfo, direction), 152},
      {"ParamInfo::option1", offsetof(ParamInfo, option1), 156},
      {"ParamInfo::option2", offsetof(ParamInfo, option2), 157},
      {"ParamInfo", sizeof(ParamInfo), 160},
      {"MethodInfo::reserved", offsetof(MethodInfo, reserved), 8},
      {"MethodInfo::context", offsetof(MethodInfo, context), 16},
      {"MethodInfo::methodId", offsetof(MethodInfo, methodId), 24},
      {"MethodInfo::name", offsetof(MethodInfo, name), 40},
      {"MethodInfo::returnType", offsetof(MethodInfo, returnType), 56},
      {"MethodInfo::methodType", offsetof(MethodInfo, methodType), 144},
      {"MethodInfo::paramCount", offsetof(MethodInfo, paramCount), 148},
      {"MethodInfo::description", offsetof(MethodInfo, description), 152},
      {"MethodInfo", sizeof(MethodInfo), 168},
      {"CachedMethodInfo::name", offsetof(CachedMethodInfo, name), 0},
      {"CachedMethodInfo::altName", offsetof(CachedMethodInfo, altName), 16},
      {"CachedMethodInfo::description", offsetof(CachedMethodInfo, description), 32},
      {"CachedMethodInfo::returnType", offsetof(CachedMethodInfo, returnType), 48},
      {"CachedMethodInfo::methodType", offsetof(CachedMethodInfo, methodType), 136},
      {"CachedMethodInfo::params", offsetof(CachedMethodInfo, params), 144},
      {"CachedMethodInfo", sizeof(CachedMethodInfo), 152},
      {"CachedParamInfo::name", offsetof(CachedParamInfo, name), 0},
      {"CachedParamInfo::type", offsetof(CachedParamInfo, type), 16},
      {"CachedParamInfo::direction", offsetof(CachedParamInfo, direction), 104},
      {"CachedParamInfo::option1", offsetof(CachedParamInfo, option1), 108},
      {"CachedParamInfo::option2", offsetof(CachedParamInfo, option2), 109},
      {"CachedParamInfo", sizeof(CachedParamInfo), 112},
      {"SecurityInfo::firstValue", offsetof(SecurityInfo, firstValue), 8},
      {"SecurityInfo::secondValue", offsetof(SecurityInfo, secondValue), 40},
      {"SecurityInfo", sizeof(SecurityInfo), 72},
      {"HandlerInfo::handlerName", offsetof(HandlerInfo, handlerName), 8},
      {"HandlerInfo::handlerType", offsetof(HandlerInfo, handlerType), 24},
      {"HandlerInfo::description", offsetof(HandlerInfo, description), 40},
      {"HandlerInfo::serverPath", offsetof(HandlerInfo, serverPath), 56},
      {"HandlerInfo::serverDirectory", offsetof(HandlerInfo, serverDirectory), 72},
      {"HandlerInfo::firstReserved", offsetof(HandlerInfo, firstReserved), 88},
      {"HandlerInfo::secondReserved", offsetof(HandlerInfo, secondReserved), 96},
      {"HandlerInfo", sizeof(HandlerInfo), 104},
  };
  for (const Place& place : places) {
    EXPECT_EQ(place.found, place.expected) << place.what;
  }
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
