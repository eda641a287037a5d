#pragma once

#include "meta_object/param_direction.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"
#include "text/zu_text.h"

namespace quenlatrix::meta_object::type {

// A value on its way between the host and a handler: an argument, a result, an element, a member.
// The base carries what is known of it as a parameter; each subclass adds the value of one type
// key and its conversion to and from text. Text conversions never fail: what cannot be read gives
// the class's zero.
//
// Values are made with `new`, copied with Clone and deleted through the virtual destructor. A
// value, of whatever class, is not for two threads at once. The order of the virtual operations and
// of the fields is a binary contract with the host.
class Object {
 public:
  // A value of the described type: all flags false, direction In, no name, no tag.
  explicit Object(TypeDesc typeDesc);
  Object(const Object& other) = default;
  Object& operator=(const Object&) = delete;
  virtual ~Object();

  // Lets go of what the value refers to.
  virtual void ReleaseItem();
  // A new object of the same class that shares nothing with this one; the caller owns it.
  virtual Object* Clone() const = 0;
  virtual const TypeDesc& GetMetaItemType() const;
  virtual TypeDesc& GetMetaItemType();
  virtual bool IsType(TypeDesc::Key key) const;

  // The value as text, and from text.
  virtual void GetDesc(WideString& text) const = 0;
  virtual void SetDesc(const WideString& text) = 0;
  virtual void GetValueAsString(WideString& text) const;
  virtual void SetValueAsString(const WideString& text);
  // The same in the process's multibyte encoding.
  virtual void GetValueAsText(ZuText& text) const;
  virtual void SetValueAsText(const char* text);

  virtual void SetParamName(const WideString& name);
  virtual const WideString& GetParamName() const;
  virtual void SetTag(const WideString& newTag);
  virtual const WideString& GetTag() const;
  virtual void SetDirection(ParamDirection newDirection);
  virtual ParamDirection GetDirection() const;
  virtual bool IsTagged() const;
  // Does the tag begin like one that names a script variable? Letter case does not matter.
  virtual bool IsMarloVariable() const;
  virtual bool IsOptional() const;
  virtual void SetOptional(bool newOptional);
  virtual void SetOptionalNotSpecified(bool notSpecified);
  virtual bool IsOptionalNotSpecified() const;
  virtual void SetParamEmptyFlag(bool empty);
  virtual bool IsParamEmptyFlagSet() const;
  virtual bool CanInvoke() const;
  virtual void SetInvoke(bool canInvoke);
  virtual bool IsVariant() const;
  virtual void SetVariant(bool isVariant);

  // Name and scope of the script variable that the tag names. False when the tag names none; a tag
  // without a scope leaves `scope` as it was.
  virtual bool GetNameAndScope(WideString& name, WideString& scope) const;
  // Makes the tag <@VARPARAM NAME="name" SCOPE="scope">; nothing is quoted or escaped. True.
  virtual bool SetNameAndScope(const WideString& name, const WideString& scope);

  // The first occurrence of `pattern`, ASCII letters in either case; null when there is none or an
  // argument is null.
  const char* stristr(const char* text, const char* pattern) const;
  // The earliest character of `text` that `set` holds; null when there is none.
  const char* strchrFirstOf(const char* text, const char* set) const;
  // ASCII letters to lower case, in place.
  void strlower(char* text) const;

 protected:
  explicit Object(TypeDesc::Key key);

  WideString paramName;
  WideString tag;
  ParamDirection direction = ParamDirection::In;
  bool optional = false;
  bool optionalNotSpecified = false;
  bool invoke = false;
  bool variant = false;
  bool paramEmpty = false;
  TypeDesc typeDesc;
  // How the host prints the value's number, as for printf; not read here.
  WideString valueFormat;
};

}  // namespace quenlatrix::meta_object::type
