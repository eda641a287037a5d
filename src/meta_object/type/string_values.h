#pragma once

#include <utility>

#include "meta_object/type/object.h"

namespace quenlatrix::meta_object::type {

// A text.
class String : public Object {
 public:
  String();
  explicit String(const TypeDesc& typeDesc);

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  const WideString& GetValue() const { return value; }
  void SetValue(WideString newValue) { value = std::move(newValue); }

 protected:
  explicit String(TypeDesc::Key key);

 private:
  WideString value;
};

// A date, kept as the text that the host wrote.
class Date : public String {
 public:
  Date();

  Object* Clone() const override;
};

// An amount of money, kept as the text that the host wrote.
class Currency : public String {
 public:
  Currency();

  Object* Clone() const override;
};

}  // namespace quenlatrix::meta_object::type
