#pragma once

#include <jni.h>

#include <list>
#include <memory>

#include "meta_object/context.h"
#include "meta_object/handler_status.h"
#include "meta_object/handlers/bean/arguments.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/java_signature.h"
#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/live_references.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/method_type.h"
#include "meta_object/type/array.h"
#include "meta_object/type/object.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::handlers::bean {

// A value that nobody has been given yet: it, and each element of an array, lets go of what it
// refers to before it is deleted.
struct ReleaseAndDelete {
  void operator()(type::Object* item) const;
};
using ItemPtr = std::unique_ptr<type::Object, ReleaseAndDelete>;

// One open method call: the parameters and the result's type as the host gave them, and the way
// from them to a JNI call and back. Belongs to the thread whose environment it keeps. No operation
// leaves a local reference or a pending Java exception behind.
class CBeanMethodInvoke {
 public:
  // Keeps the environment (may be null: then every invocation fails) and which instance the method
  // is called on. The identifier is taken apart only when `parse` is true.
  CBeanMethodInvoke(const WideString& id, JNIEnv* env, LiveInstance object, bool parse);
  CBeanMethodInvoke(const CBeanMethodInvoke&) = delete;
  CBeanMethodInvoke& operator=(const CBeanMethodInvoke&) = delete;
  virtual ~CBeanMethodInvoke();

  // Appends parameters; they stay the host's and must outlive the call. Always 0.
  virtual HandlerStatus PrepareMethodCall(std::list<type::Object*>& params);
  // The type that the method returns; void until this is called. Always 0.
  virtual HandlerStatus SetReturnDataType(const TypeDesc& type);
  // Calls the method. 0 with a result (null for none) that the caller owns; 7 otherwise, `status`
  // then left alone when nothing reached the VM. `result` may be null: the result is dropped.
  virtual HandlerStatus InvokeMethod(MethodInvokeStatus& status, type::Object** result);

  // Turns each parameter into an argument, and the whole into a JNI signature and the result's Java
  // type number. False when one can't be converted; the arguments made so far stay.
  bool SetUpParamArray(std::list<type::Object*>& params, Arguments& arguments,
                       JavaSignature& signature, int& returnNumber);
  // After the call: refills array parameters from their Java arrays and marks all parameters as
  // invoked. Always true.
  bool TranslateOutParams(jvalue* values);
  // The parameter at the 0-based index, lent; null when there is none.
  type::Object* GetParamItem(int index) const;

  // To Java. Type names are in source form. Each conversion writes `value`, appends the signature
  // code and sets the Java type number; false when it can't be done.

  // A scalar, string or object from its text; a null `param` converts the type alone.
  bool NativeType2ClassType(const wchar_t* typeName, const type::Object* param, jvalue* value,
                            JavaSignature& signature, int& number);
  // A new local reference: to a new string or wrapper object; for any other class to the object
  // whose reference the text names as a decimal number, where a live handler holds it. Null
  // otherwise.
  jobject CreateObject(const wchar_t* typeName, const wchar_t* text);
  // An array of one or two dimensions as a new local reference, null for a primitive array whose
  // elements can't be read; its description names the elements' type. With a null `array` the
  // result's type, of elements named `typeName`: the code alone.
  bool ProcessArray(type::Object* array, const wchar_t* typeName, jvalue* value,
                    JavaSignature& signature, int& number);
  bool Process2DArray(type::Array* array, const wchar_t* typeName, jvalue* value,
                      JavaSignature& signature);

  // From Java.

  // The value of a result by its Java type number, null where there is none. False without an
  // environment, and when the value of an array can't be made.
  bool TranslateJavaResult(jvalue value, type::Object** result, int number);
  // The new value of a Java object of the named class: one with its text, or for a class that
  // crosses as reference one that holds a new global reference. Null when there is none.
  type::Object* ClassToReference(const wchar_t* className, jobject reference);
  // A new, empty value of the described type; for an object one that has taken over `object`, a
  // global reference. Null for a type without values, or when the object can't be bound: `object`
  // then stays the caller's.
  type::Object* CreateItem(const TypeDesc& desc, jobject object) const;
  // What came of copying a Java array into an array value.
  enum class ArrayCopy {
    kDone,
    kNoValue,  // an empty array, one whose first row is null, or one of another shape
    kNotMade,  // a value without room for it: memory, or more places than an array has
  };
  // Fills `*result`, an array value, or a new one when it is null, from a Java array. A new one is
  // there when it is done, and in an array of arrays also when Java threw at one of the later rows.
  // What Java holds as null is an empty place, a null row a row of them.
  ArrayCopy JavaArray2Native(jarray array, const wchar_t* typeName, type::Object** result);
  ArrayCopy Java2Array2NativeArray(jarray array, const wchar_t* typeName, type::Object** result);

 private:
  // The call itself, once the arguments are there. True with `result`; false with the exception's
  // text, empty where there was none.
  bool Call(const BareName& bareName, JavaSignature& signature, int returnNumber,
            Arguments& arguments, type::Object** result, WideString& exceptionText);
  jmethodID FindMethod(jobject receiver, const BareName& bareName, JavaSignature& signature);
  // Is every object among the arguments an instance of its parameter's class, as the class loader
  // of the class that declares the method knows it? The VM trusts its caller here, so a wrong
  // object would corrupt memory.
  bool ArgumentsFit(jobject receiver, jmethodID method, Arguments& arguments);
  // The type name of a call's result without what stands before its last blank; lent.
  const wchar_t* ReturnTypeName() const;

  bool ParamToJava(type::Object& param, Arguments& arguments, std::size_t index,
                   JavaSignature& signature);
  bool ProcessParamArray(type::Array& array, const TypeDesc& desc, jvalue* value,
                         JavaSignature& signature);
  // A new Java object array; null when an element can't be converted.
  jobjectArray CreateObjectArray(type::Array& array, unsigned int count, const wchar_t* typeName);
  // One of its elements; without a text class the reference that the item names.
  LocalRef<jobject> CreateElement(const type::Object& item, const JavaTextClass* textClass);
  jobject CreateTextObject(const JavaTextClass& row, const wchar_t* text);

  // The value of an object whose class crosses as text.
  type::Object* CreateTextItem(const JavaTextClass& row, jobject reference);
  // Makes the target's places, of one dimension, and fills them from the array's first elements.
  ArrayCopy CopyElements(jarray array, const wchar_t* typeName, int count, type::Array& target);
  // False when Java threw.
  bool FillElements(jobjectArray array, const wchar_t* typeName, type::Array& target);
  ArrayCopy FillRows(jobjectArray array, const wchar_t* typeName, type::Array& target, int rows,
                     int columns);

  std::list<type::Object*> params;
  TypeDesc returnType;  // without display name, detail, items and members
  MethodType methodType = MethodType::Invoke;
  WideString methodName;
  JNIEnv* env;
  LiveInstance object;
};

// Calls a method whose result has the Java type number, with the JNI call function of that number.
// The result's unused bytes are zero; all of it for void, and for any other number, which calls
// nothing. An exception of the method stays pending.
jvalue callJavaMethod(int number, JNIEnv* env, jobject object, jmethodID method, jvalue* args);

// Lets every element let go of what it refers to: to be done before an array's elements are
// deleted, since deleting an object value alone keeps its reference counted.
void ReleaseItems(type::Array& array);

}  // namespace quenlatrix::meta_object::handlers::bean
