#pragma once

#include "meta_object/type/object.h"

namespace quenlatrix::meta_object::type {

// Numbers are printed and read as in the C locale, whatever the process's locale.

// A whole number. Text is read like strtol: blanks, a sign, digits up to the first other character.
class Int : public Object {
 public:
  explicit Int(long value);

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  long GetValue() const { return value; }
  void SetValue(long newValue) { value = newValue; }

 private:
  long value;
};

// A real number. Prints whole with six decimals, however long; text is read like atof.
class Real : public Object {
 public:
  explicit Real(double value);

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  double GetValue() const { return value; }
  void SetValue(double newValue) { value = newValue; }

 private:
  double value;
};

// A character code. As text it is its low 8 bits, a character of the process's encoding or, where
// they are none there, of Latin-1; code 0 gives no text. Text gives its first character's code.
class Char : public Object {
 public:
  Char();

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  wchar_t GetValue() const { return value; }
  void SetValue(wchar_t newValue) { value = newValue; }

 private:
  wchar_t value = 0;
};

// "true" or "false"; any text but "true" reads as false.
class Bool : public Object {
 public:
  Bool();

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  bool GetValue() const { return value; }
  void SetValue(bool newValue) { value = newValue; }

 private:
  bool value = false;
};

// An enumeration item's value; text as for Int.
class Enum : public Object {
 public:
  Enum();

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  long GetValue() const { return value; }
  void SetValue(long newValue) { value = newValue; }

 private:
  long value = 0;
};

// No value: its text is empty, and text set is ignored.
class Void : public Object {
 public:
  Void();

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;
};

}  // namespace quenlatrix::meta_object::type
