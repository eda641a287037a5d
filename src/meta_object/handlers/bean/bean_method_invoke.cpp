#include "meta_object/handlers/bean/bean_method_invoke.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/no_throw.h"
#include "text/narrow_text.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

constexpr std::wstring_view kRootClass = L"java.lang.Object";
// Only the VM's own class loaders define such classes, so every class loader sees the same ones.
constexpr std::wstring_view kPlatformPackages = L"java.";

// What the name alone tells of a parameter's class.
class NamedClass {
 public:
  explicit NamedClass(const type::Object& param) {
    const TypeDesc& desc = param.GetMetaItemType();
    WideString description;
    const wchar_t* element = desc.typeName.getWCharPtr();
    if (desc.arrayInfo != nullptr) {
      param.GetDesc(description);
      element = description.getWCharPtr();
    }
    const std::wstring_view name(element == nullptr ? L"" : element);
    const bool isPrimitiveArray = desc.arrayInfo != nullptr && FindPrimitive(element) != nullptr;
    takesAll = isPrimitiveArray || FindTextClass(element) != nullptr || name == kRootClass;
    const NarrowText narrow(element);
    if (takesAll || !name.starts_with(kPlatformPackages) || !narrow.IsAscii()) {
      return;
    }
    slashName = narrow.Get();
    dotsToSlashes(slashName.data());
    if (desc.arrayInfo != nullptr) {
      slashName = std::string(desc.arrayInfo->dimensions.size(), '[') + "L" + slashName + ";";
    }
  }

  // Is every object that was made for such a parameter one of the class?
  bool TakesAll() const { return takesAll; }
  // In slash form, where every class loader sees the same class; null for any other.
  const char* Platform() const { return slashName.empty() ? nullptr : slashName.c_str(); }

 private:
  bool takesAll = false;
  std::string slashName;
};

// A null result is a success without a value: this is none.
constexpr wchar_t kNotConverted[] =
    L"JavaBean method call failed: what the method returned needs more memory than there is, or "
    L"more than 2147483647 places of an array";

// "<init>" would run a constructor on an instance that exists.
bool IsMethodName(const char* name) { return *name != '<'; }

}  // namespace

jvalue callJavaMethod(int number, JNIEnv* env, jobject object, jmethodID method, jvalue* args) {
  if (number == kReferenceNumber) {
    jvalue result;
    result.l = env->CallObjectMethodA(object, method, args);
    return result;
  }
  if (const JavaPrimitive* const primitive = FindPrimitive(number)) {
    return primitive->call(env, object, method, args);
  }
  jvalue none;
  none.j = 0;
  return none;
}

CBeanMethodInvoke::CBeanMethodInvoke(const WideString& id, JNIEnv* env, LiveInstance object,
                                     bool parse)
    : env(env), object(object) {
  if (env != nullptr && parse && id.getWCharPtr() != nullptr) {
    ParseMethodID(id, methodName, methodType, false);
  }
}

CBeanMethodInvoke::~CBeanMethodInvoke() = default;

HandlerStatus CBeanMethodInvoke::PrepareMethodCall(std::list<type::Object*>& params) {
  this->params.insert(this->params.end(), params.begin(), params.end());
  return handler_status::kSuccess;
}

HandlerStatus CBeanMethodInvoke::SetReturnDataType(const TypeDesc& type) {
  // What a call reads of it: the names for people stay where they are.
  WideString typeName(type.typeName);
  std::unique_ptr<TypeDesc::ArrayInfo> arrayInfo;
  if (type.arrayInfo != nullptr) {
    arrayInfo = std::make_unique<TypeDesc::ArrayInfo>(*type.arrayInfo);
  }
  returnType.key = type.key;
  returnType.refType = type.refType;
  returnType.typeName = std::move(typeName);
  returnType.arrayInfo = std::move(arrayInfo);
  return handler_status::kSuccess;
}

type::Object* CBeanMethodInvoke::GetParamItem(int index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= params.size()) {
    return nullptr;
  }
  return *std::next(params.begin(), index);
}

HandlerStatus CBeanMethodInvoke::InvokeMethod(MethodInvokeStatus& status, type::Object** result) {
  if (result != nullptr) {
    *result = nullptr;
  }
  const BareName name(methodName);
  JavaSignature signature;
  int returnNumber = 0;
  Arguments arguments(env, params.size());
  if (*name.Get() == '\0' || !arguments.Reserve() ||
      !SetUpParamArray(params, arguments, signature, returnNumber)) {
    return handler_status::kCallFailed;
  }
  // What is thrown from here on, too, comes after the VM was reached.
  status.statusCode = MethodInvokeStatus::kFailed;
  WideString exceptionText;
  type::Object* made = nullptr;
  const bool isDone = Call(name, signature, returnNumber, arguments, &made, exceptionText);
  ItemPtr item(made);
  if (isDone) {
    status.description.assign(L"JavaBean method call successful");
    status.statusCode = MethodInvokeStatus::kSucceeded;
    if (result != nullptr) {
      *result = item.release();
    }
    return handler_status::kSuccess;
  }
  if (exceptionText.getWCharPtr() != nullptr) {
    status.failureText = std::move(exceptionText);
  } else {
    status.failureText.assign(L"JavaBean method call failed");
  }
  status.description.assign(L"Method: ");
  status.description.append(name.Get());
  return handler_status::kCallFailed;
}

bool CBeanMethodInvoke::Call(const BareName& bareName, JavaSignature& signature, int returnNumber,
                             Arguments& arguments, type::Object** result,
                             WideString& exceptionText) {
  // The host may have released the instance since the call was opened, and may do so at any time.
  const auto receiver = liveReferences->Acquire(env, object);
  if (!receiver) {
    return false;
  }
  const jmethodID method = FindMethod(receiver.Get(), bareName, signature);
  if (method == nullptr || !ArgumentsFit(receiver.Get(), method, arguments)) {
    return false;
  }
  const jvalue value = callJavaMethod(returnNumber, env, receiver.Get(), method, arguments.Get());
  const bool hasThrown = bean::IsJavaExceptionHappened(env, &exceptionText);
  const auto reference = LocalRef<jobject>::Adopt(
      env, returnNumber == kReferenceNumber ? value.l : static_cast<jobject>(nullptr));
  if (hasThrown) {
    return false;
  }
  TranslateOutParams(arguments.Get());
  if (!NoThrow(false, [&] { return TranslateJavaResult(value, result, returnNumber); })) {
    exceptionText.assign(kNotConverted);
    return false;
  }
  return true;
}

jmethodID CBeanMethodInvoke::FindMethod(jobject receiver, const BareName& bareName,
                                        JavaSignature& signature) {
  const auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(receiver));
  if (bean::IsJavaExceptionHappened(env, nullptr) || !cls || !IsMethodName(bareName.Get()) ||
      !(bareName.IsAscii() || HasWholeNarrowForm(methodName))) {
    return nullptr;
  }
  const JavaUtf8 name(bareName.Get(), bareName.IsAscii());
  if (signature.IsAscii()) {
    return name.Get() == nullptr ? nullptr
                                 : FindJavaMethod(env, cls.Get(), name.Get(), signature.Get());
  }
  const WideString wide(signature.Get());
  const JavaUtf8 code(wide.getCharPtr());
  if (name.Get() == nullptr || code.Get() == nullptr || !HasWholeNarrowForm(wide)) {
    return nullptr;
  }
  return FindJavaMethod(env, cls.Get(), name.Get(), code.Get());
}

bool CBeanMethodInvoke::ArgumentsFit(jobject receiver, jmethodID method, Arguments& arguments) {
  LocalRef<jobjectArray> classes;  // asked for once one of them is needed
  jsize index = -1;
  for (const type::Object* param : params) {
    const auto place = static_cast<std::size_t>(++index);
    const Arguments::Kind kind = arguments.KindOf(place);
    // What a single value was made into is of the very class.
    const bool isSurelyOfItsClass =
        kind == Arguments::Kind::kPrimitive ||
        (kind == Arguments::Kind::kMadeObject && param->GetMetaItemType().arrayInfo == nullptr);
    const jobject argument = isSurelyOfItsClass ? nullptr : arguments.Value(place).l;
    if (argument == nullptr) {
      continue;
    }
    const NamedClass named(*param);
    if (named.TakesAll()) {
      continue;
    }
    if (named.Platform() == nullptr && !classes) {
      classes = FindParameterClasses(env, receiver, method);
    }
    const auto cls = named.Platform() != nullptr ? FindJavaClass(env, named.Platform())
                                                 : FindElementClass(env, classes.Get(), index);
    if (!cls || env->IsInstanceOf(argument, cls.Get()) != JNI_TRUE) {
      return false;
    }
  }
  return true;
}

bool CBeanMethodInvoke::TranslateOutParams(jvalue* values) {
  if (values == nullptr) {
    return true;
  }
  for (type::Object* param : params) {
    auto* const javaArray = static_cast<jarray>(values->l);
    ++values;
    if (param == nullptr) {
      continue;
    }
    auto* const array =
        param->GetMetaItemType().arrayInfo == nullptr ? nullptr : dynamic_cast<type::Array*>(param);
    // What went out as null has nothing to bring back.
    if (array != nullptr && javaArray != nullptr) {
      WideString typeName;
      array->GetDesc(typeName);
      ReleaseItems(*array);
      array->Clear();
      JavaArray2Native(javaArray, typeName.getWCharPtr(), &param);
    }
    param->SetInvoke(true);
  }
  return true;
}

}  // namespace quenlatrix::meta_object::handlers::bean
