#include "meta_object/type/blob.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "meta_object/type/array.h"
#include "tests/meta_object/test_handler.h"

namespace quenlatrix::meta_object::type {
namespace {

using ::testing::IsNull;

TEST(Blob, CountsAReferenceForEveryBlobThatHoldsTheHandler) {
  TestHandler handler;
  TestHandler other;
  Blob blob(&handler);
  EXPECT_EQ(handler.GetReferenceCount(), 2U);
  const std::unique_ptr<Object> clone(blob.Clone());
  EXPECT_EQ(handler.GetReferenceCount(), 3U);
  EXPECT_EQ(blob.SetValue(&other), 0U);
  EXPECT_EQ(blob.GetValue(), &other);
  EXPECT_EQ(handler.GetReferenceCount(), 2U);
  EXPECT_EQ(other.GetReferenceCount(), 2U);
  EXPECT_EQ(blob.SetValue(nullptr), 0U);
  EXPECT_EQ(other.GetReferenceCount(), 1U);
  clone->ReleaseItem();
  clone->ReleaseItem();
  EXPECT_EQ(handler.GetReferenceCount(), 1U);

  blob.SetValue(&other);
  static_cast<Handler&>(other).Release();
  EXPECT_EQ(blob.SetValue(&other), 0U);
  EXPECT_EQ(other.GetReferenceCount(), 1U);
  EXPECT_TRUE(other.calls.empty()) << "its own handler again must not lose the last reference";
}

TEST(Blob, LeavesItsReferenceBehindWhenItIsDestroyed) {
  TestHandler handler;
  { const Blob blob(&handler); }
  {
    TypeDesc desc(TypeDesc::Key::Object, TypeDesc::RefType::ByValue, true);
    desc.arrayInfo->AddDimensionInfo(0, 1);
    Array array;
    ASSERT_TRUE(array.Create(desc));
    array.SetItem(new Blob(&handler), 0);
  }
  EXPECT_EQ(handler.GetReferenceCount(), 3U);
}

TEST(Blob, HoldsNothingWhenTheHandlerRefusesAReference) {
  TestHandler handler;
  Blob blob(&handler);
  handler.addRefStatus = 77;
  EXPECT_THAT(Blob(&handler).GetValue(), IsNull());
  EXPECT_THAT(Blob(blob).GetValue(), IsNull());
  EXPECT_EQ(blob.SetValue(&handler), 77U);
  EXPECT_THAT(blob.GetValue(), IsNull());
  EXPECT_EQ(handler.GetReferenceCount(), 1U);
}

TEST(Blob, DescribesItselfByTheRealObjectsReference) {
  TestHandler handler;
  Blob blob(&handler);
  WideString text(L"old");
  blob.GetDesc(text);
  EXPECT_THAT(text.getWCharPtr(), IsNull());
  handler.objectRef = &handler;
  blob.SetDesc(WideString("12"));
  blob.GetDesc(text);
  EXPECT_EQ(text.getCharPtr(), std::to_string(reinterpret_cast<unsigned long>(&handler)));
}

}  // namespace
}  // namespace quenlatrix::meta_object::type
