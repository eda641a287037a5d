#include <algorithm>
#include <memory>
#include <utility>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/bean_method_invoke.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/type/blob.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"
#include "meta_object/type/struct_value.h"
#include "text/narrow_text.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

using Key = TypeDesc::Key;

template <class Value>
std::unique_ptr<type::Object> Make() {
  return std::make_unique<Value>();
}

// How an empty value of each key is made; objects are made apart.
struct ItemMaker {
  Key key;
  std::unique_ptr<type::Object> (*make)();
};

constexpr ItemMaker kItemMakers[] = {
    {Key::Void, Make<type::Void>},
    {Key::Int, []() -> std::unique_ptr<type::Object> { return std::make_unique<type::Int>(0); }},
    {Key::Real,
     []() -> std::unique_ptr<type::Object> { return std::make_unique<type::Real>(0.0); }},
    {Key::String, Make<type::String>},
    {Key::Char, Make<type::Char>},
    {Key::Bool, Make<type::Bool>},
    {Key::Date, Make<type::Date>},
    {Key::Currency, Make<type::Currency>},
    {Key::Struct, Make<type::Struct>},
    {Key::Enum, Make<type::Enum>},
};

// What an object answers to toString(); empty when it throws.
WideString DescriptionOf(JNIEnv* env, jobject object) {
  WideString text;
  if (const jmethodID toString = keptLookups->FindToString(env)) {
    const auto string = LocalRef<jstring>::Adopt(env, env->CallObjectMethod(object, toString));
    if (!IsJavaExceptionHappened(env, nullptr) && !AppendJavaText(env, string.Get(), text)) {
      IsJavaExceptionHappened(env, nullptr);
    }
  }
  return text;
}

// An object value whose handler has taken over `object`; null, with `object` untouched, when it
// can't be bound.
ItemPtr MakeObjectItem(jobject object) {
  auto blob = std::make_unique<type::Blob>();
  BeanHandler* const handler = AllocHandlerObject();
  const bool isBound = handler->BindObject(object, nullptr) == handler_status::kSuccess;
  if (isBound) {
    blob->SetValue(handler);
    blob->SetInvoke(true);
  }
  handler->Release();
  return ItemPtr(isBound ? blob.release() : nullptr);
}

// A name that the mapping reads as a code ("I") is a class's here: element types go by their names.
TypeDesc ArrayDesc(const wchar_t* typeName, std::initializer_list<int> counts) {
  const TypeDesc element = GetTypeDesc(typeName);
  const bool isItself = element.typeName.compare(typeName, 0) == 0;
  TypeDesc desc(isItself ? element.key : Key::Object, TypeDesc::RefType::ByValue, true);
  for (const int count : counts) {
    desc.arrayInfo->AddDimensionInfo(0, count);
  }
  return desc;
}

// The array value to fill: one that the caller has, or a new one that goes when it isn't handed
// out.
class Target {
 public:
  explicit Target(type::Object* existing)
      : made(existing == nullptr ? new type::Array : nullptr),
        array(dynamic_cast<type::Array*>(existing == nullptr ? made.get() : existing)) {}

  explicit operator bool() const { return array != nullptr; }
  type::Array& operator*() const { return *array; }

  type::Object* Release() {
    static_cast<void>(made.release());
    return array;
  }

 private:
  ItemPtr made;
  type::Array* array;
};

}  // namespace

void ReleaseItems(type::Array& array) {
  for (int i = 0; i < array.GetItemCount(); ++i) {
    if (type::Object* const item = array.GetItemAt(static_cast<unsigned int>(i))) {
      item->ReleaseItem();
    }
  }
}

void ReleaseAndDelete::operator()(type::Object* item) const {
  if (auto* const array = dynamic_cast<type::Array*>(item)) {
    ReleaseItems(*array);
  }
  item->ReleaseItem();
  delete item;
}

bool CBeanMethodInvoke::TranslateJavaResult(jvalue value, type::Object** result, int number) {
  *result = nullptr;
  if (env == nullptr) {
    return false;
  }
  if (number == kReferenceNumber) {
    if (value.l == nullptr) {
      return true;
    }
    if (returnType.arrayInfo != nullptr) {
      return JavaArray2Native(static_cast<jarray>(value.l), ReturnTypeName(), result) !=
             ArrayCopy::kNotMade;
    }
    *result = ClassToReference(ReturnTypeName(), value.l);
    return true;
  }
  if (const JavaPrimitive* const primitive = FindPrimitive(number)) {
    *result = primitive->toValue(value).release();
  }
  return true;
}

type::Object* CBeanMethodInvoke::ClassToReference(const wchar_t* className, jobject reference) {
  if (const JavaTextClass* const row = FindTextClass(className)) {
    return CreateTextItem(*row, reference);
  }
  if (NarrowText(className).Get() == nullptr) {
    return nullptr;
  }
  auto held = GlobalRef<jobject>::Make(env, reference);
  if (bean::IsJavaExceptionHappened(env, nullptr) || !held) {
    return nullptr;
  }
  ItemPtr item = MakeObjectItem(held.Get());
  if (item != nullptr) {
    static_cast<void>(held.Release());
    item->GetMetaItemType().typeName.assign(className);
  }
  return item.release();
}

type::Object* CBeanMethodInvoke::CreateTextItem(const JavaTextClass& row, jobject reference) {
  if (row.key == Key::String) {
    auto item = std::make_unique<type::String>();
    item->SetValue(DescriptionOf(env, reference));
    return item.release();
  }
  ItemPtr item(CreateItem(TypeDesc(row.key, TypeDesc::RefType::ByValue, false), nullptr));
  item->SetValueAsString(DescriptionOf(env, reference));
  return item.release();
}

type::Object* CBeanMethodInvoke::CreateItem(const TypeDesc& desc, jobject object) const {
  if (desc.key == Key::Object) {
    TypeDesc copy(desc);
    ItemPtr item = MakeObjectItem(object);
    if (item != nullptr) {
      item->GetMetaItemType() = std::move(copy);
    }
    return item.release();
  }
  for (const ItemMaker& maker : kItemMakers) {
    if (maker.key == desc.key) {
      auto item = maker.make();
      item->GetMetaItemType() = desc;
      return item.release();
    }
  }
  return nullptr;
}

CBeanMethodInvoke::ArrayCopy CBeanMethodInvoke::JavaArray2Native(jarray array,
                                                                 const wchar_t* typeName,
                                                                 type::Object** result) {
  const jint length = env->GetArrayLength(array);
  if (length < 1) {
    bean::IsJavaExceptionHappened(env, nullptr);
    return ArrayCopy::kNoValue;
  }
  if (result == nullptr) {
    return ArrayCopy::kNoValue;
  }
  const TypeDesc& shape = *result == nullptr ? returnType : (*result)->GetMetaItemType();
  if (shape.arrayInfo == nullptr) {
    return ArrayCopy::kNoValue;
  }
  std::size_t const dimensions = shape.arrayInfo->dimensions.size();
  if (dimensions == 2) {
    return Java2Array2NativeArray(array, typeName, result);
  }
  Target target(*result);
  if (dimensions != 1 || !target) {
    return ArrayCopy::kNoValue;
  }
  const ArrayCopy outcome = CopyElements(array, typeName, length, *target);
  if (outcome == ArrayCopy::kDone) {
    *result = target.Release();
  }
  return outcome;
}

CBeanMethodInvoke::ArrayCopy CBeanMethodInvoke::CopyElements(jarray array, const wchar_t* typeName,
                                                             int count, type::Array& target) {
  if (!target.Create(ArrayDesc(typeName, {count}))) {
    return ArrayCopy::kNotMade;
  }
  if (const JavaPrimitive* const primitive = FindPrimitive(typeName)) {
    if (primitive->fromArray != nullptr) {
      primitive->fromArray(env, array, static_cast<unsigned int>(count), &target);
    }
    return ArrayCopy::kDone;
  }
  return FillElements(static_cast<jobjectArray>(array), typeName, target) ? ArrayCopy::kDone
                                                                          : ArrayCopy::kNoValue;
}

bool CBeanMethodInvoke::FillElements(jobjectArray array, const wchar_t* typeName,
                                     type::Array& target) {
  const JavaTextClass* const row = FindTextClass(typeName);
  for (int i = 0; i < target.GetItemCount(); ++i) {
    const auto element = LocalRef<jobject>::Adopt(env, env->GetObjectArrayElement(array, i));
    if (bean::IsJavaExceptionHappened(env, nullptr)) {
      return false;
    }
    if (element) {
      target.SetItemAt(row == nullptr ? ClassToReference(typeName, element.Get())
                                      : CreateTextItem(*row, element.Get()),
                       static_cast<unsigned int>(i));
    }
  }
  return true;
}

CBeanMethodInvoke::ArrayCopy CBeanMethodInvoke::Java2Array2NativeArray(jarray array,
                                                                       const wchar_t* typeName,
                                                                       type::Object** result) {
  auto* const table = static_cast<jobjectArray>(array);
  const jint rows = env->GetArrayLength(table);
  if (rows < 1) {
    bean::IsJavaExceptionHappened(env, nullptr);
    return ArrayCopy::kNoValue;
  }
  Target target(*result);
  if (!target || (*target).GetMetaItemType().arrayInfo == nullptr) {
    return ArrayCopy::kNoValue;
  }
  auto first = LocalRef<jarray>::Adopt(env, env->GetObjectArrayElement(table, 0));
  if (bean::IsJavaExceptionHappened(env, nullptr) || !first) {
    return ArrayCopy::kNoValue;
  }
  const jint columns = env->GetArrayLength(first.Get());
  first.Reset();
  if (bean::IsJavaExceptionHappened(env, nullptr) || columns < 1) {
    return ArrayCopy::kNoValue;
  }
  if (!(*target).Create(ArrayDesc(typeName, {rows, columns}))) {
    return ArrayCopy::kNotMade;
  }
  const ArrayCopy outcome = FillRows(table, typeName, *target, rows, columns);
  if (outcome != ArrayCopy::kNotMade) {
    *result = target.Release();
  }
  return outcome;
}

CBeanMethodInvoke::ArrayCopy CBeanMethodInvoke::FillRows(jobjectArray array,
                                                         const wchar_t* typeName,
                                                         type::Array& target, int rows,
                                                         int columns) {
  Target row(nullptr);
  for (int r = 0; r < rows; ++r) {
    const auto rowArray = LocalRef<jarray>::Adopt(env, env->GetObjectArrayElement(array, r));
    if (bean::IsJavaExceptionHappened(env, nullptr)) {
      return ArrayCopy::kNoValue;
    }
    // What stands beyond the columns is cut, however long the row.
    const int count = rowArray ? std::min(env->GetArrayLength(rowArray.Get()), columns) : 0;
    if (count < 1) {
      continue;
    }
    ReleaseItems(*row);
    (*row).Clear();
    if (CopyElements(rowArray.Get(), typeName, count, *row) == ArrayCopy::kNotMade) {
      return ArrayCopy::kNotMade;
    }
    for (int c = 0; c < count; ++c) {
      const auto index = static_cast<unsigned int>(c);
      type::Object* const item = (*row).GetItemAt(index);
      (*row).SetItemAt(nullptr, index);
      target.SetItemAt(item, static_cast<unsigned int>(r * columns + c));
    }
  }
  return ArrayCopy::kDone;
}

}  // namespace quenlatrix::meta_object::handlers::bean
