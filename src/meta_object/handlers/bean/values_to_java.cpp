#include <algorithm>
#include <cstring>
#include <cwchar>
#include <memory>
#include <typeinfo>

#include "meta_object/handlers/bean/bean_method_invoke.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/type/string_values.h"
#include "text/c_numbers.h"
#include "text/narrow_text.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

bool IsEmpty(const wchar_t* text) { return text == nullptr || *text == L'\0'; }

// No class is called by a name that isn't there or that the encoding lacks.
bool HasNarrowForm(const wchar_t* name) { return NarrowText(name).Get() != nullptr; }

// Elements are asked for by the indices 0 to count - 1, so a dimension that starts elsewhere
// has none for some of them.
bool StartsAtZero(const type::Array& array) {
  const int dimensions = array.GetDimensionCount();
  for (int i = 0; i < dimensions; ++i) {
    int lowerBound = 0;
    int elementCount = 0;
    if (array.GetDimensionInfo(i, lowerBound, elementCount) && lowerBound != 0) {
      return false;
    }
  }
  return true;
}

int ElementCount(const type::Array& array, int dimension) {
  int lowerBound = 0;
  int elementCount = 0;
  array.GetDimensionInfo(dimension, lowerBound, elementCount);
  return elementCount;
}

// A descriptor may promise more elements than the value has places: no memory is asked for those.
bool HasPlaces(const type::Array& array, long count) { return count <= array.GetItemCount(); }

// The value's text: a string value's own, lent, or another's, made in `made`.
const wchar_t* TextOf(const type::Object& value, WideString& made) {
  if (typeid(value) == typeid(type::String)) {
    return static_cast<const type::String&>(value).GetValue().getWCharPtr();
  }
  value.GetValueAsString(made);
  return made.getWCharPtr();
}

// False for a value without a text, or one that the encoding lacks.
bool PrimitiveToJava(const JavaPrimitive& primitive, const type::Object& param, jvalue& value) {
  if (primitive.fromValue != nullptr && primitive.fromValue(param, value)) {
    return true;
  }
  WideString made;
  const wchar_t* const text = TextOf(param, made);
  if (IsEmpty(text)) {
    return false;
  }
  if (primitive.fromText == nullptr) {
    return true;
  }
  const NarrowText narrow(text);
  if (narrow.Get() == nullptr) {
    return false;
  }
  primitive.fromText(narrow.Get(), value);
  return true;
}

// An object's text form is its reference's number. A local reference to the object; null for one
// that no live handler holds.
LocalRef<jobject> InstanceNamedBy(JNIEnv* env, const wchar_t* text) {
  const NarrowText narrow(text);
  const unsigned long number = quenlatrix::text::ReadUnsignedLong(narrow.Get(), nullptr, 10);
  auto* const reference = reinterpret_cast<jobject>(number);  // NOLINT(performance-no-int-to-ptr)
  return liveReferences->Acquire(env, reference);
}

// A new Java array for objects of the class of `first`; null, with nothing pending, when there is
// none to be had.
LocalRef<jobjectArray> NewArrayLike(JNIEnv* env, jobject first, jsize count) {
  const auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(first));
  auto made = LocalRef<jobjectArray>::Adopt(
      env, cls ? env->NewObjectArray(count, cls.Get(), nullptr) : nullptr);
  if (bean::IsJavaExceptionHappened(env, nullptr)) {
    made.Reset();
  }
  return made;
}

// A row array whose elements are lent by a two-dimensional array: it gives them back before they
// could be deleted with it.
class LentRow {
 public:
  explicit LentRow(const type::Array& table) : table(table) {}
  LentRow(const LentRow&) = delete;
  LentRow& operator=(const LentRow&) = delete;
  ~LentRow() { GiveBack(); }

  bool Create(const TypeDesc& desc, const WideString& typeName) {
    row.SetDesc(typeName);
    return row.Create(desc);
  }

  // False when a place of the row is empty.
  bool Fill(unsigned int first) {
    for (unsigned int i = 0; i < Count(); ++i) {
      type::Object* const item = table.GetItemAt(first + i);
      row.SetItemAt(item, i);
      if (item == nullptr) {
        return false;
      }
    }
    return true;
  }

  type::Array& Get() { return row; }

 private:
  unsigned int Count() const { return static_cast<unsigned int>(row.GetItemCount()); }
  void GiveBack() {
    for (unsigned int i = 0; row.GetItemCount() > 0 && i < Count(); ++i) {
      row.SetItemAt(nullptr, i);
    }
  }

  const type::Array& table;
  type::Array row;
};

}  // namespace

const wchar_t* CBeanMethodInvoke::ReturnTypeName() const {
  const wchar_t* const name = returnType.typeName.getWCharPtr();
  if (IsEmpty(name)) {
    return L"void";
  }
  // Without a method to call, the name is an element's class as the VM has it, blanks and all.
  const wchar_t* const blank = std::wcsrchr(name, L' ');
  if (blank == nullptr || methodName.getWCharPtr() == nullptr) {
    return name;
  }
  // A blank counts where the narrow form has it.
  const NarrowText narrow(name);
  return narrow.Get() == nullptr || std::strchr(narrow.Get(), ' ') == nullptr ? name : blank + 1;
}

bool CBeanMethodInvoke::SetUpParamArray(std::list<type::Object*>& params, Arguments& arguments,
                                        JavaSignature& signature, int& returnNumber) {
  std::size_t index = 0;
  signature.Append('(');
  for (type::Object* param : params) {
    if (param == nullptr || !ParamToJava(*param, arguments, index, signature)) {
      return false;
    }
    ++index;
  }
  signature.Append(')');
  jvalue scratch;
  return returnType.arrayInfo != nullptr
             ? ProcessArray(nullptr, ReturnTypeName(), &scratch, signature, returnNumber)
             : NativeType2ClassType(ReturnTypeName(), nullptr, &scratch, signature, returnNumber);
}

bool CBeanMethodInvoke::ParamToJava(type::Object& param, Arguments& arguments, std::size_t index,
                                    JavaSignature& signature) {
  const TypeDesc& desc = param.GetMetaItemType();
  const wchar_t* const typeName = desc.typeName.getWCharPtr();
  jvalue& value = arguments.Value(index);
  int number = 0;
  const bool isDone =
      desc.arrayInfo != nullptr
          ? ProcessArray(&param, nullptr, &value, signature, number)
          : !IsEmpty(typeName) && NativeType2ClassType(typeName, &param, &value, signature, number);
  if (number == kReferenceNumber) {
    const bool isMade = desc.arrayInfo != nullptr || FindTextClass(typeName) != nullptr;
    arguments.KindOf(index) = isMade ? Arguments::Kind::kMadeObject : Arguments::Kind::kInstance;
  }
  return isDone;
}

bool CBeanMethodInvoke::NativeType2ClassType(const wchar_t* typeName, const type::Object* param,
                                             jvalue* value, JavaSignature& signature, int& number) {
  if (const JavaPrimitive* const primitive = FindPrimitive(typeName)) {
    if (param != nullptr && !PrimitiveToJava(*primitive, *param, *value)) {
      return false;
    }
    signature.Append(primitive->code);
    number = primitive->number;
    return true;
  }
  if (env == nullptr) {
    return false;
  }
  // Before there is a reference that a signature without memory would leave to nobody.
  if (!signature.AppendClass(typeName)) {
    return false;
  }
  if (param != nullptr) {
    WideString made;
    const wchar_t* text = TextOf(*param, made);
    if (IsEmpty(text) && strStringType->compare(typeName, 0) == 0) {
      text = strEmptyString->getWCharPtr();
    }
    const jobject reference = IsEmpty(text) ? nullptr : CreateObject(typeName, text);
    if (reference == nullptr) {
      return false;
    }
    value->l = reference;
  }
  number = kReferenceNumber;
  return true;
}

jobject CBeanMethodInvoke::CreateObject(const wchar_t* typeName, const wchar_t* text) {
  if (env == nullptr) {
    return nullptr;
  }
  if (const JavaTextClass* const row = FindTextClass(typeName)) {
    return CreateTextObject(*row, text);
  }
  return HasNarrowForm(typeName) ? InstanceNamedBy(env, text).Release() : nullptr;
}

jobject CBeanMethodInvoke::CreateTextObject(const JavaTextClass& row, const wchar_t* text) {
  const TextClass* const kept = keptLookups->FindTextClass(env, row);
  if (kept == nullptr) {
    return nullptr;
  }
  const bool isString = row.key == TypeDesc::Key::String;
  jmethodID constructor = kept->fromText;
  jvalue argument[1];
  LocalRef<jstring> string;
  if (isString && strEmptyString->compare(text, 0) == 0) {
    constructor = kept->withoutArgument;
  } else {
    const NarrowText narrow(text);
    if (row.key != TypeDesc::Key::Char) {
      string = NewJavaText(env, narrow);
      argument[0].l = string.Get();
    } else if (narrow.Get() != nullptr) {
      argument[0].c = FirstCharacter(narrow.Get());
    }
    if (row.key == TypeDesc::Key::Char ? narrow.Get() == nullptr : !string) {
      return nullptr;
    }
  }
  if (!isString) {
    return NewJavaObject(env, kept->cls, constructor, argument).Release();
  }
  // Without a frame: the constructors of strings throw nothing.
  auto made = LocalRef<jobject>::Adopt(env, env->NewObjectA(kept->cls, constructor, argument));
  return bean::IsJavaExceptionHappened(env, nullptr) ? nullptr : made.Release();
}

bool CBeanMethodInvoke::ProcessArray(type::Object* array, const wchar_t* typeName, jvalue* value,
                                     JavaSignature& signature, int& number) {
  number = kReferenceNumber;
  if (array != nullptr) {
    auto* const values = dynamic_cast<type::Array*>(array);
    const TypeDesc& desc = array->GetMetaItemType();
    return values != nullptr && desc.arrayInfo != nullptr &&
           ProcessParamArray(*values, desc, value, signature);
  }
  std::size_t const dimensions =
      returnType.arrayInfo == nullptr ? 1 : returnType.arrayInfo->dimensions.size();
  if (dimensions > 2) {
    return false;
  }
  signature.Append(dimensions == 2 ? "[[" : "[");
  if (const JavaPrimitive* const primitive = FindPrimitive(typeName)) {
    signature.Append(primitive->code);
    return true;
  }
  return signature.AppendClass(typeName);
}

bool CBeanMethodInvoke::ProcessParamArray(type::Array& array, const TypeDesc& desc, jvalue* value,
                                          JavaSignature& signature) {
  WideString description;
  array.GetDesc(description);
  const wchar_t* const typeName = description.getWCharPtr();
  std::size_t const dimensions = desc.arrayInfo->dimensions.size();
  if (dimensions == 2) {
    signature.Append('[');
    return Process2DArray(&array, typeName, value, signature);
  }
  if (dimensions != 1) {
    return false;
  }
  const auto count = static_cast<unsigned int>(std::max(ElementCount(array, 0), 1));
  const bool isWhole = StartsAtZero(array) && HasPlaces(array, count);
  const JavaPrimitive* const primitive = FindPrimitive(typeName);
  if (primitive != nullptr) {
    if (primitive->toArray == nullptr) {
      return false;
    }
    signature.Append('[');
    signature.Append(primitive->code);
    value->l = isWhole ? primitive->toArray(env, count, &array) : nullptr;
    return true;
  }
  signature.Append('[');
  if (!signature.AppendClass(typeName) || !isWhole) {
    return false;
  }
  value->l = CreateObjectArray(array, count, typeName);
  return value->l != nullptr;
}

LocalRef<jobject> CBeanMethodInvoke::CreateElement(const type::Object& item,
                                                   const JavaTextClass* textClass) {
  WideString made;
  const wchar_t* const text = TextOf(item, made);
  if (textClass != nullptr) {
    return LocalRef<jobject>::Adopt(env, CreateTextObject(*textClass, text));
  }
  return InstanceNamedBy(env, text);
}

jobjectArray CBeanMethodInvoke::CreateObjectArray(type::Array& array, unsigned int count,
                                                  const wchar_t* typeName) {
  if (env == nullptr || !HasNarrowForm(typeName)) {
    return nullptr;
  }
  const JavaTextClass* const textClass = FindTextClass(typeName);
  LocalRef<jobjectArray> result;
  for (unsigned int i = 0; i < count; ++i) {
    const type::Object* const item = array.GetItemAt(i);
    if (item == nullptr) {
      return nullptr;
    }
    const auto element = CreateElement(*item, textClass);
    if (i == 0) {
      if (!element) {
        return nullptr;
      }
      result = NewArrayLike(env, element.Get(), static_cast<jsize>(count));
      if (!result) {
        return nullptr;
      }
    }
    if (element) {
      env->SetObjectArrayElement(result.Get(), static_cast<jsize>(i), element.Get());
      if (bean::IsJavaExceptionHappened(env, nullptr)) {
        return nullptr;
      }
    }
  }
  return result.Release();
}

bool CBeanMethodInvoke::Process2DArray(type::Array* array, const wchar_t* typeName, jvalue* value,
                                       JavaSignature& signature) {
  const TypeDesc& desc = array->GetMetaItemType();
  if (desc.arrayInfo == nullptr || desc.arrayInfo->dimensions.size() != 2 ||
      !StartsAtZero(*array)) {
    return false;
  }
  const int rows = ElementCount(*array, 0);
  const int columns = ElementCount(*array, 1);
  if (rows < 1 || columns < 1 || !HasPlaces(*array, static_cast<long>(rows) * columns)) {
    return false;
  }
  TypeDesc rowDesc(GetTypeDesc(typeName).key, TypeDesc::RefType::ByValue, true);
  rowDesc.typeName.assign(typeName);
  rowDesc.arrayInfo->AddDimensionInfo(0, columns);
  LentRow row(*array);
  if (!row.Create(rowDesc, rowDesc.typeName)) {
    return false;
  }
  LocalRef<jobjectArray> outer;
  JavaSignature otherRowsCode;
  for (int r = 0; r < rows; ++r) {
    if (!row.Fill(static_cast<unsigned int>(r) * static_cast<unsigned int>(columns))) {
      return false;
    }
    jvalue rowValue;
    rowValue.l = nullptr;
    int number = 0;
    const bool isMade =
        ProcessArray(&row.Get(), nullptr, &rowValue, r == 0 ? signature : otherRowsCode, number);
    const auto javaRow = LocalRef<jobject>::Adopt(env, rowValue.l);
    if (!isMade && javaRow) {
      return false;
    }
    if (r == 0) {
      if (!javaRow) {
        return false;
      }
      outer = NewArrayLike(env, javaRow.Get(), rows);
      if (!outer) {
        return false;
      }
    }
    env->SetObjectArrayElement(outer.Get(), r, javaRow.Get());
    if (bean::IsJavaExceptionHappened(env, nullptr)) {
      return false;
    }
  }
  value->l = outer.Release();
  return value->l != nullptr;
}

}  // namespace quenlatrix::meta_object::handlers::bean
