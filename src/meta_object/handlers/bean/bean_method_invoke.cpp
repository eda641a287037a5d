#include "meta_object/handlers/bean/bean_method_invoke.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>

#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/handlers/bean/plugin_state.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

// So many local references a native method may always have.
constexpr std::size_t kSureLocalReferences = 16;
constexpr char kRootClass[] = "java.lang.Object";
// Only the VM's own class loaders define such classes, so every class loader sees the same ones.
constexpr char kPlatformPackages[] = "java.";

// An entry is a local reference of the conversion's when it is an array, or an object made from
// text; a primitive value and a handler's global reference must never be deleted.
bool HoldsLocalReference(const type::Object& param) {
  const TypeDesc& desc = param.GetMetaItemType();
  if (desc.arrayInfo != nullptr) {
    return true;
  }
  const char* const name = desc.typeName.getCharPtr();
  return name != nullptr && FindTextClass(name) != nullptr;
}

// "<init>" would run a constructor on an instance that exists.
bool IsMethodName(const char* name) { return name != nullptr && *name != '<'; }

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

// The converted parameters, and the local references among them until the scope ends.
class CBeanMethodInvoke::Arguments {
 public:
  Arguments(JNIEnv* env, const std::list<type::Object*>& params)
      : env(env), params(params), values(std::make_unique<jvalue[]>(params.size())) {}
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments() {
    const jvalue* value = values.get();
    for (const type::Object* param : params) {
      if (param != nullptr && HoldsLocalReference(*param)) {
        LocalRef<jobject>::Adopt(env, value->l).Reset();
      }
      ++value;
    }
  }

  // Makes room for a local reference of each; false when the VM has none.
  bool Reserve() {
    if (params.size() <= kSureLocalReferences) {
      return true;
    }
    const bool isReserved =
        env->EnsureLocalCapacity(static_cast<jint>(params.size() + kSureLocalReferences)) == JNI_OK;
    return !bean::IsJavaExceptionHappened(env, nullptr) && isReserved;
  }

  // Null when there are none.
  jvalue* Get() { return params.empty() ? nullptr : values.get(); }

 private:
  JNIEnv* env;
  const std::list<type::Object*>& params;
  std::unique_ptr<jvalue[]> values;
};

CBeanMethodInvoke::CBeanMethodInvoke(const WideString& id, JNIEnv* env, jobject object, bool parse)
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
  returnType = type;
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
  WideString bareName;
  if (!MethodId2MethodName(methodName, bareName)) {
    return handler_status::kCallFailed;
  }
  WideString signature;
  int returnNumber = 0;
  Arguments arguments(env, params);
  if (!arguments.Reserve() ||
      !SetUpParamArray(params, arguments.Get(), result, signature, returnNumber) ||
      signature.getWCharPtr() == nullptr) {
    return handler_status::kCallFailed;
  }
  WideString exceptionText;
  type::Object* made = nullptr;
  const bool isDone = Call(bareName, signature, returnNumber, arguments, &made, exceptionText);
  ItemPtr item(made);
  if (isDone) {
    status.description.assign(L"JavaBean method call successful");
    status.statusCode = MethodInvokeStatus::kSucceeded;
    if (result != nullptr) {
      *result = item.release();
    }
    return handler_status::kSuccess;
  }
  status.statusCode = MethodInvokeStatus::kFailed;
  if (exceptionText.getWCharPtr() != nullptr) {
    status.failureText = exceptionText;
  } else {
    status.failureText.assign(L"JavaBean method call failed");
  }
  status.description.assign(L"Method: ");
  status.description.append(bareName.getWCharPtr());
  return handler_status::kCallFailed;
}

bool CBeanMethodInvoke::Call(const WideString& bareName, const WideString& signature,
                             int returnNumber, Arguments& arguments, type::Object** result,
                             WideString& exceptionText) {
  // The host may have released the instance since the call was opened.
  if (!liveReferences.Contains(object)) {
    return false;
  }
  auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(object));
  if (bean::IsJavaExceptionHappened(env, nullptr) || !cls) {
    return false;
  }
  const JavaUtf8 name(bareName.getCharPtr());
  const JavaUtf8 code(signature.getCharPtr());
  if (!IsMethodName(name.Get()) || !HasWholeNarrowForm(methodName) || code.Get() == nullptr ||
      !HasWholeNarrowForm(signature)) {
    return false;
  }
  const jmethodID method = FindJavaMethod(env, cls.Get(), name.Get(), code.Get());
  cls.Reset();
  if (method == nullptr || !ArgumentsFit(arguments.Get())) {
    return false;
  }
  const jvalue value = callJavaMethod(returnNumber, env, object, method, arguments.Get());
  const bool hasThrown = bean::IsJavaExceptionHappened(env, &exceptionText);
  const auto reference = LocalRef<jobject>::Adopt(
      env, returnNumber == kReferenceNumber ? value.l : static_cast<jobject>(nullptr));
  if (hasThrown) {
    return false;
  }
  TranslateOutParams(arguments.Get());
  return TranslateJavaResult(value, result, returnNumber);
}

bool CBeanMethodInvoke::ArgumentsFit(const jvalue* values) {
  for (const type::Object* param : params) {
    const jobject argument = values->l;
    ++values;
    const TypeDesc& desc = param->GetMetaItemType();
    const bool isPrimitive =
        desc.arrayInfo == nullptr && FindPrimitive(desc.typeName.getWCharPtr()) != nullptr;
    if (!isPrimitive && argument != nullptr && !ArgumentFits(*param, argument)) {
      return false;
    }
  }
  return true;
}

bool CBeanMethodInvoke::ArgumentFits(const type::Object& param, jobject argument) {
  const TypeDesc& desc = param.GetMetaItemType();
  WideString elementName;
  std::string name;
  if (desc.arrayInfo == nullptr) {
    elementName = desc.typeName;
  } else {
    param.GetDesc(elementName);
    if (FindPrimitive(elementName.getWCharPtr()) != nullptr) {
      return true;
    }
    name.append(desc.arrayInfo->dimensions.size(), '[').append("L");
  }
  const char* const narrow = elementName.getCharPtr();
  if (narrow == nullptr) {
    return false;
  }
  if (std::strcmp(narrow, kRootClass) == 0 || FindTextClass(narrow) != nullptr) {
    return true;
  }
  const bool isPlatformClass =
      std::strncmp(narrow, kPlatformPackages, std::strlen(kPlatformPackages)) == 0;
  name += narrow;
  if (desc.arrayInfo != nullptr) {
    name += ';';
  }
  if (isPlatformClass) {
    std::replace(name.begin(), name.end(), '.', '/');
  } else {
    std::replace(name.begin(), name.end(), '/', '.');
  }
  const JavaUtf8 text(name.c_str());
  if (text.Get() == nullptr) {
    return false;
  }
  const auto cls = isPlatformClass ? FindJavaClass(env, text.Get())
                                   : FindJavaClassSeenBy(env, object, text.Get());
  return cls && env->IsInstanceOf(argument, cls.Get()) == JNI_TRUE;
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
      JavaArray2Native(javaArray, typeName, &param);
    }
    param->SetInvoke(true);
  }
  return true;
}

}  // namespace quenlatrix::meta_object::handlers::bean
