#include "meta_object/info/cached_method_info.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "meta_object/wide_view.h"

namespace quenlatrix::meta_object::info::cache {
namespace {

void DeleteList(CachedMethodInfo::ParamList* params) {
  if (params != nullptr) {
    for (CachedParamInfo* param : *params) {
      delete param;
    }
    delete params;
  }
}

struct ListDeleter {
  void operator()(CachedMethodInfo::ParamList* params) const { DeleteList(params); }
};

CachedMethodInfo::ParamList* CopyList(const CachedMethodInfo::ParamList* params) {
  if (params == nullptr) {
    return nullptr;
  }
  std::unique_ptr<CachedMethodInfo::ParamList, ListDeleter> copy(new CachedMethodInfo::ParamList);
  copy->reserve(params->size());
  for (const CachedParamInfo* param : *params) {
    if (param != nullptr) {
      copy->push_back(new CachedParamInfo(*param));
    }
  }
  return copy.release();
}

bool SameParam(const CachedParamInfo* left, const CachedParamInfo* right) {
  return left != nullptr && right != nullptr ? *left == *right : left == right;
}

}  // namespace

CachedParamInfo::CachedParamInfo(WideString name, TypeDesc type, ParamDirection direction)
    : name(std::move(name)), type(std::move(type)), direction(direction) {}

bool CachedParamInfo::operator==(const CachedParamInfo& other) const {
  return ViewOf(name) == ViewOf(other.name) && type == other.type && direction == other.direction &&
         option1 == other.option1 && option2 == other.option2;
}

CachedMethodInfo::CachedMethodInfo(const CachedMethodInfo& other)
    : name(other.name),
      altName(other.altName),
      returnType(other.returnType),
      methodType(other.methodType),
      params(CopyList(other.params)) {}

CachedMethodInfo::CachedMethodInfo(CachedMethodInfo&& other) noexcept
    : name(std::move(other.name)),
      altName(std::move(other.altName)),
      description(std::move(other.description)),
      returnType(std::move(other.returnType)),
      methodType(std::exchange(other.methodType, MethodType::Invoke)),
      params(std::exchange(other.params, nullptr)) {}

CachedMethodInfo::~CachedMethodInfo() { DeleteList(params); }

CachedMethodInfo& CachedMethodInfo::operator=(const CachedMethodInfo& other) {
  if (this != &other) {
    *this = CachedMethodInfo(other);
  }
  return *this;
}

CachedMethodInfo& CachedMethodInfo::operator=(CachedMethodInfo&& other) noexcept {
  if (this != &other) {
    DeleteList(std::exchange(params, std::exchange(other.params, nullptr)));
    name = std::move(other.name);
    altName = std::move(other.altName);
    description = std::move(other.description);
    returnType = std::move(other.returnType);
    methodType = std::exchange(other.methodType, MethodType::Invoke);
  }
  return *this;
}

CachedParamInfo* CachedMethodInfo::GetParamInfo(int index) const {
  if (params == nullptr || index < 0 || static_cast<std::size_t>(index) >= params->size()) {
    return nullptr;
  }
  return (*params)[static_cast<std::size_t>(index)];
}

void CachedMethodInfo::Clear() { *this = CachedMethodInfo(); }

bool CachedMethodInfo::operator==(const CachedMethodInfo& other) const {
  if (ViewOf(name) != ViewOf(other.name) || ViewOf(altName) != ViewOf(other.altName) ||
      returnType != other.returnType || methodType != other.methodType) {
    return false;
  }
  if (params == nullptr || other.params == nullptr) {
    return params == other.params;
  }
  return std::equal(params->begin(), params->end(), other.params->begin(), other.params->end(),
                    SameParam);
}

}  // namespace quenlatrix::meta_object::info::cache
