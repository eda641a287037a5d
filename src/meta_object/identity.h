#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quenlatrix::meta_object {

// Names an object: the handler that owns it, the handler's own data for it (for a bean its class)
// and named attributes, as one text and as its parts:
//
//   handler "://" handlerData { "?" name "=" value }
//
// as in "JAVABEAN://SimpleBean?Scope=user?Mode=cached". Nothing is escaped: "://", "?" and "=" are
// reserved. The setters keep the text and its parts in step. Attribute names are compared without
// regard to the case of ASCII letters. What there is no memory for throws std::bad_alloc and leaves
// the identity as it was.
//
// Copies are deep. Threads: as for a standard string.
class Identity {
 public:
  class Attribute {
   public:
    Attribute(std::string name, std::string value);
    virtual ~Attribute() = default;
    Attribute(const Attribute&) = default;
    Attribute& operator=(const Attribute& other);

    std::string name;
    std::string value;
  };

  // Everything empty.
  Identity();
  explicit Identity(const char* identity);
  // A part that holds a reserved token, or is null, stays empty; the identity is then invalid.
  Identity(const char* handler, const char* handlerData);
  virtual ~Identity();

  Identity(const Identity& other);
  Identity& operator=(const Identity& other);

  // Replaces everything by `text` and its parts; null and empty clear the identity. A text without
  // "://" is kept, with all parts empty.
  void SetIdentity(const char* text);
  void SetIdentity(const std::string& text);

  // Fills the parts from `identity`, leaving that text as it is. False when it holds no "://"; the
  // parts are then empty.
  // Attributes without "=" or without a name are skipped, white space around names and values goes.
  bool ParseIdentity();

  // Rebuilds `identity` and `core` from the parts.
  void GenerateIdentity();
  // Rebuilds `core` from `identity`.
  void GenerateCore();

  // These answer false, and change nothing, when a text holds a reserved token.
  bool SetHandler(const std::string& text);
  bool SetHandlerData(const std::string& text);
  // Replaces the value of the first attribute of that name, whose spelling stays, or appends an
  // attribute. False also for an empty name: no attribute is without one, so the text only becomes
  // canonical.
  bool SetAttribute(const std::string& name, const std::string& value);
  // Removes the first attribute of that name; false when there is none.
  bool RemoveAttribute(const std::string& name);

  // Value of the first attribute of that name, an empty string when there is none. Valid until the
  // attribute is changed or removed.
  const std::string& GetAttributeAsString(const std::string& name) const;
  // The first attribute of that name, or null. Lent: it stays this identity's own.
  Attribute* FindAttribute(const std::string& name) const;

  // Whether the text holds "://", "?" or "=".
  bool FindReservedTokens(const std::string& text) const;

  // White space is what the C locale classes as such.
  // The text without white space at its ends; one of nothing but white space stays as it is.
  std::string TrimString(std::string text) const;
  // Index of the first or the last white-space character, std::string::npos when there is none.
  std::string::size_type FindWhiteSpace(const std::string& text) const;
  std::string::size_type ReverseFindWhiteSpace(const std::string& text) const;

  // Whether the text, the handler and its data are all there.
  bool IsValid() const;

  void Clear();

  // Read these; change them through the operations above, which keep them in step.
  // The whole text.
  std::string identity;
  // What stands before the first "://".
  std::string handler;
  // What stands between that and the next "?".
  std::string handlerData;
  // `identity` up to its first "?".
  std::string core;
  // In the order of the text, none null.
  std::vector<std::unique_ptr<Attribute>> attributes;

 private:
  void Swap(Identity& other) noexcept;
  // Of all but `identity`.
  void SwapParts(Identity& other) noexcept;
  void Take(std::string text);
  // Sets a part and rebuilds the text.
  void ChangePart(std::string& part, std::string text);
  // Fill an identity that has no parts.
  bool ParseParts(std::string_view text);
  void ParseAttributes(std::string_view items);
};

}  // namespace quenlatrix::meta_object
