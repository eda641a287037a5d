#include "os/tls_slot.h"

#include <gtest/gtest.h>

#include <list>
#include <thread>

namespace {

TEST(TlsValue, IsEachThreadsOwn) {
  TlsValue<unsigned long> slot;
  EXPECT_EQ(slot.Get(), 0u);
  EXPECT_TRUE(slot.Set(5));
  unsigned long atStart = 1;
  unsigned long atEnd = 0;
  std::thread([&] {
    atStart = slot.Get();
    slot.Set(~0ul);
    atEnd = slot.Get();
  }).join();
  EXPECT_EQ(atStart, 0u);
  EXPECT_EQ(atEnd, ~0ul);
  EXPECT_EQ(slot.Get(), 5u);
}

TEST(TlsSlot, WithoutAKeyHoldsNothingAndLeavesNoKeyBehind) {
  std::list<TlsSlot> slots;
  while (slots.size() < 5000 && slots.emplace_back().IsValidTLSData()) {
  }
  TlsSlot& last = slots.back();
  ASSERT_FALSE(last.IsValidTLSData());
  EXPECT_EQ(last.GetTlsValue(), nullptr);
  EXPECT_FALSE(last.SetTlsValue(&last));
  EXPECT_FALSE(last.InitTLSData());

  slots.pop_front();
  EXPECT_TRUE(last.InitTLSData());
  EXPECT_TRUE(last.SetTlsValue(&last));
  EXPECT_EQ(last.GetTlsValue(), &last);
  last.CleanUpTLSData();
  EXPECT_FALSE(last.IsValidTLSData());
  EXPECT_TRUE(TlsSlot().IsValidTLSData());
}

}  // namespace
