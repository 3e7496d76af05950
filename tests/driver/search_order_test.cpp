#include "driver/search_order.h"

#include "driver/driver_platform.h"
#include "tests/driver/driver_test.h"

namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class SearchOrder : public DriverTest {
 protected:
  // The value's bytes after the call, which must be of the same type as before.
  std::string BytesAfter(const SimulatedValue& before, int result) {
    Machine.SetSearchOrder(0, before);
    EXPECT_EQ(relax_driver_search_order(), result);
    EXPECT_EQ(Machine.search_order(0)->type, before.type);
    return Machine.search_order(0)->bytes;
  }
};

TEST_F(SearchOrder, OneBecomesTwo) {
  EXPECT_EQ(BytesAfter(DwordValue(1), 1), DwordValue(2).bytes);
  EXPECT_THAT(Machine.calls, ElementsAreArray(RelaxingCalls()));
}

TEST_F(SearchOrder, ZeroIsLeftUntouched) {
  EXPECT_EQ(BytesAfter(DwordValue(0), 1), DwordValue(0).bytes);
  EXPECT_THAT(Machine.calls, ElementsAreArray(SearchOrderReadOnlyCalls()));
}

TEST_F(SearchOrder, TwoIsLeftUntouched) {
  EXPECT_EQ(BytesAfter(DwordValue(2), 1), DwordValue(2).bytes);
  EXPECT_THAT(Machine.calls, ElementsAreArray(SearchOrderReadOnlyCalls()));
}

TEST_F(SearchOrder, LargeNumberWhoseLowByteIsOneIsLeftUntouched) {
  EXPECT_EQ(BytesAfter(DwordValue(0x101), 1), DwordValue(0x101).bytes);
}

TEST_F(SearchOrder, ValueOfAnotherTypeIsLeftUntouched) {
  const std::string bytes = DwordValue(1).bytes;
  EXPECT_EQ(BytesAfter({3, bytes}, 0), bytes);  // REG_BINARY of four bytes
  EXPECT_THAT(Machine.CallsOf({"SetRegistryValue"}), IsEmpty());
}

TEST_F(SearchOrder, ValueOfAnotherSizeIsLeftUntouched) {
  const std::string bytes("\1\0\0\0\0\0\0\0", 8);
  EXPECT_EQ(BytesAfter({kTypeDword, bytes}, 0), bytes);
  EXPECT_EQ(BytesAfter({kTypeDword, "\1"}, 0), "\1");
  EXPECT_THAT(Machine.CallsOf({"SetRegistryValue"}), IsEmpty());
}

TEST_F(SearchOrder, KeyWithoutTheValueGivesZero) {
  Machine.registry[0] = {};
  EXPECT_EQ(relax_driver_search_order(), 0);
  EXPECT_EQ(Machine.search_order(0), std::nullopt);
  EXPECT_EQ(Machine.calls.back(), "CloseRegistryKey()");
}

TEST_F(SearchOrder, OwnViewThenThe64BitThenThe32BitViewIsTried) {
  EXPECT_EQ(relax_driver_search_order(), 0);
  EXPECT_THAT(Machine.calls, ElementsAreArray(NoPolicyKeyCalls()));
}

TEST_F(SearchOrder, KeyOfThe64BitViewAloneIsRelaxed) {
  Machine.SetSearchOrder(kRegistryView64, DwordValue(1));
  Machine.SetSearchOrder(kRegistryView32, DwordValue(1));
  EXPECT_EQ(relax_driver_search_order(), 1);
  EXPECT_EQ(Machine.search_order(kRegistryView64)->bytes, DwordValue(2).bytes);
  EXPECT_EQ(Machine.search_order(kRegistryView32)->bytes, DwordValue(1).bytes);
}

TEST_F(SearchOrder, KeyOfThe32BitViewIsTheLastResort) {
  Machine.SetSearchOrder(kRegistryView32, DwordValue(1));
  EXPECT_EQ(relax_driver_search_order(), 1);
  EXPECT_EQ(Machine.search_order(kRegistryView32)->bytes, DwordValue(2).bytes);
}

TEST_F(SearchOrder, OwnViewWithAnotherValueEndsTheSearch) {
  Machine.SetSearchOrder(0, DwordValue(0));
  Machine.SetSearchOrder(kRegistryView64, DwordValue(1));
  EXPECT_EQ(relax_driver_search_order(), 1);
  EXPECT_EQ(Machine.search_order(kRegistryView64)->bytes, DwordValue(1).bytes);
}

TEST_F(SearchOrder, FirstQueryFailsAndTheKeyIsClosed) {
  Machine.FailNth("QueryRegistryValue", 1);
  EXPECT_EQ(BytesAfter(DwordValue(1), 0), DwordValue(1).bytes);
}

TEST_F(SearchOrder, ReadingTheValueFailsAndTheKeyIsClosed) {
  Machine.FailNth("QueryRegistryValue", 2);
  EXPECT_EQ(BytesAfter(DwordValue(1), 0), DwordValue(1).bytes);
  EXPECT_THAT(Machine.CallsOf({"SetRegistryValue"}), IsEmpty());
}

TEST_F(SearchOrder, WritingTheValueFailsAndTheKeyIsClosed) {
  Machine.Fail("SetRegistryValue");
  EXPECT_EQ(BytesAfter(DwordValue(1), 0), DwordValue(1).bytes);
  EXPECT_THAT(Machine.calls, ElementsAreArray(RelaxingCalls()));
}

TEST_F(SearchOrder, WithoutRightsNothingIsOpenedOrChanged) {
  Machine.administrator = false;
  EXPECT_EQ(BytesAfter(DwordValue(1), 0), DwordValue(1).bytes);
  EXPECT_THAT(Machine.calls, ElementsAreArray(NoPolicyKeyCalls()));
}

}  // namespace
