#include "meta_object/info/method_info.h"

namespace quenlatrix::meta_object::info {

MethodInfo::~MethodInfo() = default;

}  // namespace quenlatrix::meta_object::info
