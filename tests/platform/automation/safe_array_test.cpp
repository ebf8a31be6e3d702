#include <gtest/gtest.h>

#include <vector>

#include "platform/automation/failure_number.h"
#include "platform/automation/safe_array.h"

using namespace kw::automation;

namespace {

TEST(SafeArrayShape, EmptyArraysCountsAndBadBounds) {
    const SafeArray none;
    EXPECT_EQ(none.Dims(), 1);
    EXPECT_EQ(none.UBound(), -1);
    EXPECT_EQ(none.Count(), 0u);

    const SafeArray a = SafeArray::TwoDim(-1, 1, 5, 8);
    EXPECT_EQ(a.Count(), 12u);
    EXPECT_EQ(SafeArray::OneDim(3, 2).Count(), 0u);  // an empty dimension
    EXPECT_EQ(SafeArray::TwoDim(0, -1, 1, 4).Count(), 0u);
    for (int dimension : {0, 3}) {
        EXPECT_EQ(FailureNumber([&] { a.UBound(dimension); }), err::kSubscriptOutOfRange);
    }
    EXPECT_EQ(FailureNumber([] { SafeArray::OneDim(3, 1); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([] { SafeArray::TwoDim(0, 1, 2, 0); }), err::kSubscriptOutOfRange);
}

TEST(SafeArrayElements, FirstSubscriptVariesFastestInStorage) {
    SafeArray a = SafeArray::TwoDim(1, 3, 10, 11);  // three rows of two fields
    for (int row = 1; row <= 3; ++row) {
        for (int field = 10; field <= 11; ++field) a.Set(row, field, row * 100 + field);
    }
    std::vector<std::int32_t> stored;
    for (const auto& v : a.Storage()) stored.push_back(CLng(v));
    EXPECT_EQ(stored, (std::vector<std::int32_t>{110, 210, 310, 111, 211, 311}));
    EXPECT_EQ(CLng(a.Get(3, 10)), 310);
}

TEST(SafeArrayElements, SubscriptsOutsideTheBoundsOrOfTheWrongCountFail) {
    SafeArray one = SafeArray::OneDim(1, 3);
    SafeArray two = SafeArray::TwoDim(0, 1, 1, 2);
    EXPECT_EQ(FailureNumber([&] { SafeArray().Get(0); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { one.Get(0); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { one.Set(4, 1); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { one.Get(1, 1); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { two.Get(0); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { two.Set(2, 1, 1); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { two.Get(0, 0); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { two.Get(0, 3); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { two.Get(-1, 1); }), err::kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { one.Get(3); }), 0);
    EXPECT_EQ(FailureNumber([&] { two.Get(1, 2); }), 0);
}

TEST(SafeArrayElements, VariantElementsStartEmptyStringElementsHoldConvertedText) {
    EXPECT_TRUE(SafeArray::OneDim(0, 1).Get(0).IsEmpty());
    SafeArray a = SafeArray::TwoDim(0, 1, 0, 1, SafeArray::ElementType::String);
    EXPECT_EQ(a.Get(1, 1), Variant(""));
    a.Set(0, 0, 7);
    a.Set(0, 1, true);
    a.Set(1, 0, 2.5);
    EXPECT_EQ(a.Get(0, 0), Variant("7"));
    EXPECT_EQ(a.Get(0, 1), Variant("True"));
    EXPECT_EQ(a.Get(1, 0), Variant("2.5"));
    EXPECT_EQ(FailureNumber([&] { a.Set(1, 1, Variant::Null()); }), err::kInvalidUseOfNull);
    EXPECT_EQ(a.Get(1, 1), Variant(""));  // a failed store leaves the element alone
}

TEST(SafeArrayCopies, CopiesAreIndependentAndCompareByValue) {
    SafeArray a = SafeArray::OneDim(1, 2);
    a.Set(1, "x");
    SafeArray nested = SafeArray::OneDim(0, 0);
    nested.Set(0, 1);
    a.Set(2, Variant(nested));

    SafeArray b = a;
    EXPECT_EQ(a, b);
    SafeArray inner = b.Get(2).ToArray();
    inner.Set(0, 2);
    b.Set(2, Variant(inner));
    EXPECT_EQ(CLng(a.Get(2).ToArray().Get(0)), 1);  // the nested array was copied too
    EXPECT_FALSE(a == b);

    EXPECT_FALSE(SafeArray::OneDim(0, 1) ==
                 SafeArray::OneDim(0, 1, SafeArray::ElementType::String));
    EXPECT_FALSE(SafeArray::OneDim(0, 3) == SafeArray::TwoDim(0, 1, 0, 1));
    EXPECT_FALSE(SafeArray::OneDim(0, 2) == SafeArray::OneDim(1, 3));
}

}  // namespace
