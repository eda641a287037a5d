#include <memory>
#include <string>
#include <utility>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/bean_method_invoke.h"
#include "meta_object/handlers/bean/j_collection.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_thread.h"
#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/no_throw.h"
#include "meta_object/wide_view.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

// Runs `operation` on the context's open walk; the failure status without one.
template <class Operation>
HandlerStatus OnOpenWalk(context::CollectionContext& context, Operation&& operation) {
  auto* const walk = static_cast<JCollection*>(context.walk);
  if (walk == nullptr) {
    return handler_status::kNoCollection;
  }
  return NoThrow(handler_status::kNoCollection, [&] { return operation(*walk); });
}

HandlerStatus StatusOf(bool isDone) {
  return isDone ? handler_status::kSuccess : handler_status::kNoCollection;
}

// The type of an element by its class's name. In the default package a class may be called "I" or
// "int": its name is no primitive type's, which only an array's element is, written as a letter.
TypeDesc DescribeClass(const char* name) {
  WideString wide;
  AppendModifiedUtf8(name, wide);
  TypeDesc desc = GetTypeDesc(wide.getWCharPtr());
  std::wstring element(ViewOf(wide));
  element.erase(0, element.find_first_not_of(L'['));
  const bool isArray = desc.arrayInfo != nullptr;
  const bool isLetterOfArray = isArray && element.size() == 1;
  if (!isLetterOfArray && FindPrimitive(desc.typeName.getWCharPtr()) != nullptr) {
    desc.key = TypeDesc::Key::Object;
    // An array is copied by the name of its elements' type: "int" would read references as numbers.
    const std::wstring bare = isArray ? element.substr(1, element.size() - 2) : element;
    const bool staysSignature = isArray && FindPrimitive(bare.c_str()) != nullptr;
    desc.typeName.assign(staysSignature ? element.c_str() : bare.c_str());
  }
  return desc;
}

// Appends the value of each element. False, with the rest left out, when one can't be converted.
bool ConvertElements(WalkedElements& elements, CBeanMethodInvoke& conversion,
                     std::list<type::Object*>& items, int* delivered) {
  std::size_t index = 0;
  for (const WalkedElements::Run& run : elements.Runs()) {
    conversion.SetReturnDataType(DescribeClass(run.type.c_str()));
    for (; index < run.end; ++index) {
      const auto element = elements.Take(index);
      jvalue value;
      value.l = element.Get();
      type::Object* made = nullptr;
      if (!conversion.TranslateJavaResult(value, &made, kReferenceNumber)) {
        return false;
      }
      ItemPtr item(made);
      if (item != nullptr) {
        item->SetInvoke(true);
      }
      items.push_back(item.get());
      static_cast<void>(item.release());
      if (delivered != nullptr) {
        ++*delivered;
      }
    }
  }
  return true;
}

}  // namespace

HandlerStatus BeanHandler::OpenCollection(context::CollectionContext& context) {
  if (context.walk != nullptr) {
    return handler_status::kSuccess;
  }
  return NoThrow(handler_status::kNoCollection, [&] {
    JavaThread thread;
    auto walk = std::make_unique<JCollection>();
    walk->SetCollection(Instance(), thread.Get());
    if (!walk->Reset()) {
      return handler_status::kNoCollection;
    }
    context.walk = walk.release();
    thread.StayAttached();
    return handler_status::kSuccess;
  });
}

HandlerStatus BeanHandler::ResetCollection(context::CollectionContext& context) {
  return OnOpenWalk(context, [](JCollection& walk) { return StatusOf(walk.Reset()); });
}

HandlerStatus BeanHandler::GetNextItems(context::CollectionContext& context, int count,
                                        std::list<type::Object*>& items, int* delivered) {
  if (delivered != nullptr) {
    *delivered = 0;
  }
  return OnOpenWalk(context, [&](JCollection& walk) {
    WalkedElements elements(walk.GetEnv());
    if (!walk.Next(count, elements)) {
      return handler_status::kNoCollection;
    }
    CBeanMethodInvoke conversion(WideString::empty, walk.GetEnv(), Instance(), false);
    return StatusOf(ConvertElements(elements, conversion, items, delivered));
  });
}

HandlerStatus BeanHandler::SkipItems(context::CollectionContext& context, int count) {
  return OnOpenWalk(context, [count](JCollection& walk) { return StatusOf(walk.Skip(count)); });
}

HandlerStatus BeanHandler::GetCollectionSize(context::CollectionContext& context, int& size) {
  return OnOpenWalk(context, [&size](JCollection& walk) { return StatusOf(walk.GetSize(size)); });
}

HandlerStatus BeanHandler::CloseCollection(context::CollectionContext& context) {
  if (context.walk == nullptr) {
    return handler_status::kNoCollection;
  }
  delete static_cast<JCollection*>(std::exchange(context.walk, nullptr));
  DetachNativeThread();
  return handler_status::kSuccess;
}

}  // namespace quenlatrix::meta_object::handlers::bean
