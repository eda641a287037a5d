#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "meta_object/handlers/bean/bean_method_invoke.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "text/c_numbers.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

bool IsEmpty(const WideString& text) {
  return text.getWCharPtr() == nullptr || *text.getWCharPtr() == L'\0';
}

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

std::string SlashForm(const WideString& typeName) {
  const char* const narrow = typeName.getCharPtr();
  std::string name = narrow == nullptr ? "" : narrow;
  dotsToSlashes(name.data());
  return name;
}

// Appends a class's code. False for what is no class's name: a character with a meaning of its own
// in signatures would turn one parameter into several.
bool AppendClassCode(const std::string& slashName, WideString& signature) {
  if (slashName.find_first_of(";[()") != std::string::npos) {
    return false;
  }
  signature.append(L"L");
  signature.append(slashName.c_str());
  signature.append(L";");
  return true;
}

// An object's text form is its reference's number.
jobject ReferenceNamedBy(const WideString& text) {
  const unsigned long number = quenlatrix::text::ReadUnsignedLong(text.getCharPtr(), nullptr, 10);
  return reinterpret_cast<jobject>(number);  // NOLINT(performance-no-int-to-ptr)
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

WideString CBeanMethodInvoke::ReturnTypeName() const {
  if (IsEmpty(returnType.typeName)) {
    return L"void";
  }
  const char* const narrow = returnType.typeName.getCharPtr();
  const char* const blank = narrow == nullptr ? nullptr : std::strrchr(narrow, ' ');
  return blank == nullptr ? returnType.typeName : WideString(blank + 1);
}

bool CBeanMethodInvoke::SetUpParamArray(std::list<type::Object*>& params, jvalue* values,
                                        type::Object**, WideString& signature, int& returnNumber) {
  WideString typeName;
  WideString valueText;
  int number = 0;
  signature.append(L"(");
  for (type::Object* param : params) {
    if (param == nullptr) {
      return false;
    }
    const TypeDesc& desc = param->GetMetaItemType();
    if (desc.arrayInfo != nullptr) {
      if (!ProcessArray(param, typeName, valueText, values, signature, number)) {
        return false;
      }
    } else {
      typeName = desc.typeName;
      param->GetValueAsString(valueText);
      if (IsEmpty(valueText) && typeName.compare(strStringType.getWCharPtr(), 0) == 0) {
        valueText = strEmptyString;
      }
      if (IsEmpty(typeName) || IsEmpty(valueText) ||
          !NativeType2ClassType(typeName, valueText, values, signature, number)) {
        return false;
      }
    }
    ++values;
  }
  signature.append(L")");
  typeName = ReturnTypeName();
  valueText.assign(L"");
  jvalue scratch;
  return returnType.arrayInfo != nullptr
             ? ProcessArray(nullptr, typeName, valueText, &scratch, signature, returnNumber)
             : NativeType2ClassType(typeName, valueText, &scratch, signature, returnNumber);
}

bool CBeanMethodInvoke::NativeType2ClassType(WideString& typeName, WideString& valueText,
                                             jvalue* value, WideString& signature, int& number) {
  if (const JavaPrimitive* const primitive = FindPrimitive(typeName.getWCharPtr())) {
    if (!IsEmpty(valueText) && primitive->fromText != nullptr) {
      const char* const narrow = valueText.getCharPtr();
      if (narrow == nullptr) {
        return false;
      }
      primitive->fromText(narrow, *value);
    }
    signature.append(primitive->code);
    number = primitive->number;
    return true;
  }
  if (env == nullptr) {
    return false;
  }
  if (!IsEmpty(valueText)) {
    const jobject reference = CreateObject(typeName, valueText);
    if (reference == nullptr) {
      return false;
    }
    value->l = reference;
  }
  std::string const slashName = SlashForm(typeName);
  if (!IsEmpty(typeName)) {
    typeName.assign(slashName.c_str());
  }
  number = kReferenceNumber;
  return AppendClassCode(slashName, signature);
}

jobject CBeanMethodInvoke::CreateObject(WideString& typeName, WideString& valueText) {
  const char* const name = typeName.getCharPtr();
  if (env == nullptr || name == nullptr) {
    return nullptr;
  }
  if (const JavaTextClass* const row = FindTextClass(name)) {
    const auto cls = FindJavaClass(env, row->slashName);
    return cls ? CreateTextObject(cls.Get(), row->key == TypeDesc::Key::Char, typeName, valueText)
               : nullptr;
  }
  const jobject reference = ReferenceNamedBy(valueText);
  return liveReferences.Contains(reference) ? reference : nullptr;
}

jobject CBeanMethodInvoke::CreateTextObject(jclass cls, bool isCharacter, WideString& typeName,
                                            WideString& valueText) {
  jvalue argument[1];
  const char* signature = "(Ljava/lang/String;)V";
  LocalRef<jstring> string;
  if (isCharacter) {
    signature = "(C)V";
    const char* const narrow = valueText.getCharPtr();
    argument[0].c = FirstCharacter(narrow == nullptr ? "" : narrow);
  } else if (valueText.compare(strEmptyString.getWCharPtr(), 0) == 0 &&
             typeName.compare(strStringType.getWCharPtr(), 0) == 0) {
    signature = "()V";
    valueText.assign(L"");
  } else {
    string = NewJavaText(env, valueText.getCharPtr());
    if (!string) {
      return nullptr;
    }
    argument[0].l = string.Get();
  }
  const jmethodID constructor = FindJavaMethod(env, cls, "<init>", signature);
  if (constructor == nullptr) {
    return nullptr;
  }
  return NewJavaObject(env, cls, constructor, argument).Release();
}

bool CBeanMethodInvoke::ProcessArray(type::Object* array, WideString& typeName,
                                     WideString& valueText, jvalue* value, WideString& signature,
                                     int& number) {
  number = kReferenceNumber;
  if (array != nullptr) {
    auto* const values = dynamic_cast<type::Array*>(array);
    const TypeDesc& desc = array->GetMetaItemType();
    return values != nullptr && desc.arrayInfo != nullptr &&
           ProcessParamArray(*values, desc, typeName, valueText, value, signature, number);
  }
  std::size_t const dimensions =
      returnType.arrayInfo == nullptr ? 1 : returnType.arrayInfo->dimensions.size();
  if (dimensions > 2) {
    return false;
  }
  signature.append(dimensions == 2 ? L"[[" : L"[");
  if (const JavaPrimitive* const primitive = FindPrimitive(typeName.getWCharPtr())) {
    signature.append(primitive->code);
    return true;
  }
  return AppendClassCode(SlashForm(typeName), signature);
}

bool CBeanMethodInvoke::ProcessParamArray(type::Array& array, const TypeDesc& desc,
                                          WideString& typeName, WideString& valueText,
                                          jvalue* value, WideString& signature, int& number) {
  array.GetDesc(typeName);
  std::size_t const dimensions = desc.arrayInfo->dimensions.size();
  if (dimensions == 2) {
    number = kReferenceNumber;
    signature.append(L"[");
    return Process2DArray(&array, typeName, valueText, value, signature);
  }
  if (dimensions != 1) {
    return false;
  }
  const auto count = static_cast<unsigned int>(std::max(ElementCount(array, 0), 1));
  const JavaPrimitive* const primitive = FindPrimitive(typeName.getWCharPtr());
  if (primitive != nullptr) {
    if (primitive->toArray == nullptr) {
      return false;
    }
    signature.append(L"[");
    signature.append(primitive->code);
    value->l = StartsAtZero(array) ? primitive->toArray(env, count, &array) : nullptr;
    return true;
  }
  signature.append(L"[");
  if (!AppendClassCode(SlashForm(typeName), signature) || !StartsAtZero(array)) {
    return false;
  }
  value->l = CreateObjectArray(array, count, typeName);
  return value->l != nullptr;
}

LocalRef<jobject> CBeanMethodInvoke::CreateElement(const type::Object& item, WideString& typeName) {
  WideString text;
  item.GetValueAsString(text);
  const jobject element = CreateObject(typeName, text);
  const char* const name = typeName.getCharPtr();
  const bool isHandlersOwn = name == nullptr || FindTextClass(name) == nullptr;
  // Every element is released alike, so a handler's reference gets a local one beside it.
  return LocalRef<jobject>::Adopt(
      env, isHandlersOwn && element != nullptr ? env->NewLocalRef(element) : element);
}

jobjectArray CBeanMethodInvoke::CreateObjectArray(type::Array& array, unsigned int count,
                                                  WideString& typeName) {
  LocalRef<jobjectArray> result;
  for (unsigned int i = 0; i < count; ++i) {
    const type::Object* const item = array.GetItemAt(i);
    if (item == nullptr) {
      return nullptr;
    }
    const auto element = CreateElement(*item, typeName);
    if (i == 0) {
      if (!element) {
        return nullptr;
      }
      const auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(element.Get()));
      result = LocalRef<jobjectArray>::Adopt(
          env, env->NewObjectArray(static_cast<jsize>(count), cls.Get(), nullptr));
      if (bean::IsJavaExceptionHappened(env, nullptr) || !result) {
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

bool CBeanMethodInvoke::Process2DArray(type::Array* array, WideString& typeName,
                                       WideString& valueText, jvalue* value,
                                       WideString& signature) {
  const TypeDesc& desc = array->GetMetaItemType();
  if (desc.arrayInfo == nullptr || desc.arrayInfo->dimensions.size() != 2 ||
      !StartsAtZero(*array)) {
    return false;
  }
  const int rows = ElementCount(*array, 0);
  const int columns = ElementCount(*array, 1);
  TypeDesc rowDesc(GetTypeDesc(typeName.getWCharPtr()).key, TypeDesc::RefType::ByValue, true);
  rowDesc.typeName = typeName;
  rowDesc.arrayInfo->AddDimensionInfo(0, columns);
  LentRow row(*array);
  if (!row.Create(rowDesc, typeName)) {
    return false;
  }
  LocalRef<jobjectArray> outer;
  WideString otherRowsCode;
  for (int r = 0; r < rows; ++r) {
    if (!row.Fill(static_cast<unsigned int>(r) * static_cast<unsigned int>(columns))) {
      return false;
    }
    jvalue rowValue;
    rowValue.l = nullptr;
    int number = 0;
    const bool isMade = ProcessArray(&row.Get(), typeName, valueText, &rowValue,
                                     r == 0 ? signature : otherRowsCode, number);
    const auto javaRow = LocalRef<jobject>::Adopt(env, rowValue.l);
    if (!isMade && javaRow) {
      return false;
    }
    if (r == 0) {
      if (!javaRow) {
        return false;
      }
      const auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(javaRow.Get()));
      outer = LocalRef<jobjectArray>::Adopt(env, env->NewObjectArray(rows, cls.Get(), nullptr));
      if (bean::IsJavaExceptionHappened(env, nullptr) || !outer) {
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
