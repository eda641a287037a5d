#pragma once

#include "catalogue_handler.h"
#include "tally.h"

namespace tally {

inline constexpr const char* kHandlerType = "TALLY";

// A tally that scripts can use: "TALLY://votes" names the one called "votes". Threads: as for every
// Handler.
class TallyHandler : public catalogue::CatalogueHandler {
 public:
  TallyHandler();

  void* GetObjectRef() override { return tally.get(); }
  const void* GetObjectRef() const override { return tally.get(); }

 protected:
  bool IsValidObjectImp() override { return tally != nullptr; }
  bool MakeObject(const std::string& data) override;
  void DropObject() override { tally.reset(); }
  catalogue::Value Call(std::size_t method, const catalogue::Arguments& arguments) override;
  bool GatherElements(std::vector<catalogue::Value>& elements) override;

 private:
  std::shared_ptr<Tally> tally;
};

}  // namespace tally
