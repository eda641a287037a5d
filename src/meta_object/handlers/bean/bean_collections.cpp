#include "meta_object/handlers/bean/bean_handler.h"

namespace quenlatrix::meta_object::handlers::bean {

HandlerStatus BeanHandler::OpenCollection(context::CollectionContext&) {
  return handler_status::kNoCollection;
}

HandlerStatus BeanHandler::ResetCollection(context::CollectionContext&) {
  return handler_status::kNoCollection;
}

HandlerStatus BeanHandler::GetNextItems(context::CollectionContext&, int, std::list<type::Object*>&,
                                        int* delivered) {
  if (delivered != nullptr) {
    *delivered = 0;
  }
  return handler_status::kNoCollection;
}

HandlerStatus BeanHandler::SkipItems(context::CollectionContext&, int) {
  return handler_status::kNoCollection;
}

HandlerStatus BeanHandler::GetCollectionSize(context::CollectionContext&, int&) {
  return handler_status::kNoCollection;
}

HandlerStatus BeanHandler::CloseCollection(context::CollectionContext&) {
  return handler_status::kNoCollection;
}

}  // namespace quenlatrix::meta_object::handlers::bean
