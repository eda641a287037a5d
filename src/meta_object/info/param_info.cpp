#include "meta_object/info/param_info.h"

namespace quenlatrix::meta_object::info {

ParamInfo::~ParamInfo() = default;

}  // namespace quenlatrix::meta_object::info
