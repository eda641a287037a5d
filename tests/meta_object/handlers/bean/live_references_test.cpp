#include "meta_object/handlers/bean/live_references.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace quenlatrix::meta_object::handlers::bean {
namespace {

TEST(LiveReferences, AreFoundUntilTheyAreRemovedHoweverManyLieTogether) {
  LiveReferences live;
  const auto reference = [](std::uintptr_t number) {
    return reinterpret_cast<jobject>(number * 64 * sizeof(void*));
  };
  for (std::uintptr_t i = 1; i <= 8; ++i) live.Add(reference(i));
  live.Remove(reference(1));
  live.Add(reference(8));
  for (std::uintptr_t i = 2; i <= 8; ++i) {
    EXPECT_TRUE(live.Contains(reference(i))) << i;
    live.Remove(reference(i));
    EXPECT_FALSE(live.Contains(reference(i))) << i;
  }
  EXPECT_FALSE(live.Contains(nullptr));
}

}  // namespace
}  // namespace quenlatrix::meta_object::handlers::bean
