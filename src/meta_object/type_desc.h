#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "text/wide_string.h"

namespace quenlatrix::meta_object {

// Describes the type of one value that crosses between the host and a handler: a type key, a
// reference kind, three names and, where the type needs them, an array's dimensions, an
// enumeration's items or a structure's members.
//
// A descriptor owns all its parts; copies are deep. A descriptor without names and information
// allocates nothing. Not thread-safe; several threads may compare, copy and serialise one at once,
// as long as none asks a name for its narrow form. What there is no memory for throws
// std::bad_alloc and leaves the descriptor as it was.
class TypeDesc {
 public:
  // The type of the value, of an array the type of its elements. No key stands for arrays.
  enum class Key : std::uint32_t {
    Void = 0,
    Int = 1,
    Real = 2,
    String = 3,
    Char = 4,
    Bool = 5,
    Date = 6,
    Currency = 7,
    Struct = 16,
    Unknown = 65533,
    Enum = 65534,
    Object = 65535,
  };

  enum class RefType : std::uint32_t { ByValue = 0, ByRef = 1 };

  // How deep Deserialize follows structures in structures: descriptor texts come from outside and
  // must not exhaust the stack.
  static constexpr int kMaxNesting = 64;

  struct ArrayInfo {
    struct DimensionInfo {
      std::int32_t lowerBound = 0;    // the lowest valid index
      std::int32_t elementCount = 0;  // negative: unknown

      friend bool operator==(const DimensionInfo&, const DimensionInfo&) = default;
    };

    // Appends a dimension. Always true.
    bool AddDimensionInfo(int lowerBound, int elementCount);
    // Fills both outputs with the dimension at the 0-based `index`; false, with both left alone,
    // when there is none.
    bool GetDimensionInfo(int index, int& lowerBound, int& elementCount) const;
    void Clear();
    // Equal when both have the same dimensions in the same order.
    bool operator==(const ArrayInfo& other) const = default;

    // Appends the dimension text to `out`, such as "0,-1:1,10". Always true.
    bool Serialize(WideString& out) const;
    // Replaces the dimensions with those of a dimension text. An item without a comma adds none, a
    // bad number reads as 0. Always true.
    bool Deserialize(const WideString& text);

    std::vector<DimensionInfo> dimensions;  // the first is dimension 0
  };

  struct EnumInfo {
    struct Item {
      WideString name;
      long value = 0;
    };

    EnumInfo() = default;
    EnumInfo(const EnumInfo&) = default;
    EnumInfo(EnumInfo&&) noexcept = default;
    ~EnumInfo() = default;
    EnumInfo& operator=(const EnumInfo& other) { return *this = EnumInfo(other); }
    EnumInfo& operator=(EnumInfo&&) noexcept = default;

    // Appends an item. Always true.
    bool AddEnumItem(const WideString& name, long value);
    void Clear();

    // Appends the item text to `out`, such as "Red=0,Green=1"; values are written with their low
    // 32 bits, as signed numbers. Always true.
    bool Serialize(WideString& out) const;
    // Replaces the items with those of an item text. A bad number reads as 0. Always true.
    bool Deserialize(const WideString& text);

    std::vector<Item> items;
  };

  struct StructInfo {
    StructInfo() = default;
    StructInfo(const StructInfo& other);
    StructInfo(StructInfo&&) noexcept = default;
    ~StructInfo() = default;
    // Takes the other's name and appends copies of its members to the ones that are here.
    StructInfo& operator=(const StructInfo& other);
    // Takes the other's name and members in place of its own.
    StructInfo& operator=(StructInfo&&) noexcept = default;

    void Clear();
    // Equal names, and as many members, pairwise equal. A null member equals nothing.
    bool operator==(const StructInfo& other) const;

    // Replaces `out` with the structure text, such as "[Point]x,int%%Int!y,double%%Real". Null
    // members are left out. Always true.
    bool Serialize(WideString& out) const;
    // Replaces name and members with those of a structure text. False when a "[" opens the text
    // and no "]" follows, the structure is empty then; and, with nothing changed, when structures
    // are nested deeper than kMaxNesting.
    bool Deserialize(const WideString& text);

    std::vector<std::unique_ptr<TypeDesc>> members;
    WideString structName;
  };

  // Void, by value.
  TypeDesc() = default;
  // Makes empty information objects where the key is Enum or Struct, or `isArray` is true.
  TypeDesc(Key key, RefType refType, bool isArray);
  // By value, no array.
  TypeDesc(Key key, WideString displayName, WideString typeName);
  // `keyword`, in any letter case, is one of "INT", "FLOAT", "TEXT", "BOOL", "CHAR", "STRUCTURE",
  // "CURRENCY", "DATE", "ENUMERATION" and "OBJECT"; any other word gives Unknown.
  TypeDesc(const WideString& keyword, RefType refType, bool isArray);
  // A copy of a descriptor with enumeration information has the key Enum whatever the source's key.
  TypeDesc(const TypeDesc& other);
  // Leaves `other` as after Clear.
  TypeDesc(TypeDesc&& other) noexcept;
  virtual ~TypeDesc();
  TypeDesc& operator=(const TypeDesc& other);
  TypeDesc& operator=(TypeDesc&& other) noexcept;

  // Back to Void, by value, with no information and no names.
  void Clear();

  // Asks whether `other` fits this descriptor; not symmetric. Where this side is an Enum
  // with its information, the other must be one too (items not looked at); where this side has
  // array information, the other must have the same dimensions; where
  // this side has structure information, the structures alone decide; otherwise key, reference
  // kind and `typeName` do. `displayName` and `detail` never take part.
  bool operator==(const TypeDesc& other) const;

  // Replaces `out` with the text form:
  //   displayName "," typeName "%%" [detail "%%"] type text
  // such as "array of int,int%%Array{0,-1}". An array's text holds neither key nor reference kind.
  // Always true.
  bool Serialize(WideString& out) const;
  // Reads the text form; what the text doesn't mention keeps its value, and text that matches
  // nothing gives the key Unknown. Information objects of an enumeration and a structure that are
  // there are filled anew and stay where they are. What Serialize wrote reads back to a descriptor
  // that writes the same text, when no name holds a separator. False, with nothing changed, when
  // structures are nested deeper than kMaxNesting.
  bool Deserialize(const WideString& text);

  std::unique_ptr<EnumInfo> enumInfo;
  std::unique_ptr<ArrayInfo> arrayInfo;
  std::unique_ptr<StructInfo> structInfo;
  Key key = Key::Void;
  RefType refType = RefType::ByValue;
  WideString displayName;  // for people, such as "array of int"
  WideString typeName;     // the only name that equality looks at, such as "int"
  WideString detail;
};

}  // namespace quenlatrix::meta_object
