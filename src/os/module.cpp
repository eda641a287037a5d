#include "os/module.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace {

struct ImageSearch {
  const link_map* start;
  const void* handle;
};

// One step of dl_iterate_phdr, which looks at the whole list at once: the loader keeps its list
// still only while it calls this.
int SearchList(dl_phdr_info* /*info*/, std::size_t /*size*/, void* data) {
  const auto& search = *static_cast<const ImageSearch*>(data);
  const link_map* image = search.start;
  while (image->l_prev != nullptr) {
    image = image->l_prev;
  }
  while (image != nullptr && image != search.handle) {
    image = image->l_next;
  }
  return image != nullptr ? 1 : -1;
}

// The file that the address lies in, as the loader knows it, and that file's image.
const char* FileOf(const void* address, const link_map*& image) {
  Dl_info info = {};
  void* map = nullptr;
  if (dladdr1(address, &info, &map, RTLD_DL_LINKMAP) == 0 || map == nullptr) {
    return nullptr;
  }
  image = static_cast<const link_map*>(map);
  return info.dli_fname;
}

// Asking the loader about a handle that is no image of its list crashes, so this comes first.
bool IsLoadedImage(const void* module) {
  ImageSearch search = {nullptr, module};
  return FileOf(reinterpret_cast<const void*>(&IsLoadedImage), search.start) != nullptr &&
         dl_iterate_phdr(SearchList, &search) == 1;
}

}  // namespace

unsigned long GetModuleFileName(void* module, char* buffer, unsigned long size) {
  if (!IsLoadedImage(module)) {
    return 0;
  }
  const void* const symbol = dlsym(module, "InitHandler");
  const link_map* image = nullptr;
  const char* const file = symbol != nullptr ? FileOf(symbol, image) : nullptr;
  // The look-up also searches the images that `module` needs.
  if (file == nullptr || image != module) {
    return 0;
  }
  std::error_code failed;
  const std::filesystem::path path = std::filesystem::absolute(file, failed);
  const unsigned long length = path.native().size();
  if (failed || length == 0 || length >= size) {
    return 0;
  }
  std::memcpy(buffer, path.c_str(), length + 1);
  return length;
}

int LoadString(void* /*module*/, const char* id, char* buffer, int size) {
  if (size < 1) {
    return size;
  }
  const std::size_t count = std::min(std::strlen(id) + 1, static_cast<std::size_t>(size));
  std::memcpy(buffer, id, count - 1);
  buffer[count - 1] = '\0';
  return static_cast<int>(count);
}
