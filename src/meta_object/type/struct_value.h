#pragma once

#include <memory>
#include <vector>

#include "meta_object/type/object.h"

namespace quenlatrix::meta_object::type {

// A structure: an ordered list of member values, which it owns. A copy holds clones of them. Its
// text is always "structure", and text set is ignored.
class Struct : public Object {
 public:
  Struct();
  Struct(const Struct& other);
  ~Struct() override;

  Object* Clone() const override;
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  std::vector<std::unique_ptr<Object>> members;
};

}  // namespace quenlatrix::meta_object::type
