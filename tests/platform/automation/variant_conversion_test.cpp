#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "platform/automation/failure_number.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

using namespace kw::automation;

namespace {

struct Thing : Object {};

TEST(VariantToInteger, RoundsHalvesToEvenAndOverflowsAtTheEdges) {
    const std::pair<Variant, std::int32_t> toInt[] = {
        {2.5, 2},       {3.5, 4},         {-2.5, -2},         {-3.5, -4}, {2.5000001, 3},
        {2.4999999, 2}, {32767.4, 32767}, {-32768.5, -32768}, {1.5f, 2},  {Variant("5.5"), 6}};
    for (const auto& [in, out] : toInt) EXPECT_EQ(CInt(in), out) << CStr(in);
    // 32767.5 and -32769.5 round past the edge.
    for (double d :
         {32768.0, 32767.5, -32769.0, -32769.5, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(FailureNumber([d] { CInt(d); }), err::kOverflow) << d;
    }
    EXPECT_EQ(FailureNumber([] { CInt("40000"); }), err::kOverflow);

    EXPECT_EQ(CLng(4.5), 4);
    EXPECT_EQ(CLng(2147483647.0), 2147483647);
    EXPECT_EQ(CLng(-2147483648.5), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(CLng("-2147483648"), std::numeric_limits<std::int32_t>::min());
    for (double d : {2147483648.0, 2147483647.5, -2147483649.0, 1e300}) {
        EXPECT_EQ(FailureNumber([d] { CLng(d); }), err::kOverflow) << d;
    }
    EXPECT_EQ(FailureNumber([] { CLng("2147483647.5"); }), err::kOverflow);
    EXPECT_FLOAT_EQ(CSng(3.4e38), 3.4e38f);
    EXPECT_EQ(FailureNumber([] { CSng(3.5e38); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CSng("-1e39"); }), err::kOverflow);
}

TEST(VariantFromText, ReadsNumbersWithBlanksLeadingZerosAndHex) {
    for (auto [text, value] : {std::pair{"07", 7},
                               {"  42  ", 42},
                               {"\t-3 ", -3},
                               {"+5", 5},
                               {"&h1f", 31},
                               {"&O17", 15},
                               {"&HFFFF", -1}}) {
        EXPECT_EQ(CInt(text), value) << text;  // &HFFFF: sixteen bits as two's complement
    }
    EXPECT_EQ(CLng("&H10000"), 65536);
    EXPECT_EQ(CLng("&HFFFFFFFF"), -1);
    EXPECT_EQ(CLng("1.5D2"), 150);
    EXPECT_DOUBLE_EQ(CDbl(".25"), 0.25);
    EXPECT_DOUBLE_EQ(CDbl("3."), 3.0);
    EXPECT_DOUBLE_EQ(CDbl(" -1.25e-2 "), -0.0125);
    EXPECT_DOUBLE_EQ(CDbl("1e-400"), 0.0);

    for (const char* text :
         {"", " ", "abc", "12abc", "1 2", "1.2.3", "&H", "&HG", "--1", ".", "1e", "e5", "True"}) {
        EXPECT_EQ(FailureNumber([&] { CInt(text); }), err::kTypeMismatch) << '"' << text << '"';
        EXPECT_EQ(FailureNumber([&] { CDbl(text); }), err::kTypeMismatch) << '"' << text << '"';
    }
    EXPECT_EQ(FailureNumber([] { CDbl("1e400"); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CLng("&H100000000"); }), err::kOverflow);
}

TEST(VariantConversions, EmptyBooleanNullObjectAndArray) {
    const Variant empty;
    EXPECT_EQ(CInt(empty), 0);
    EXPECT_EQ(CDbl(empty), 0.0);
    EXPECT_EQ(CStr(empty), "");
    EXPECT_FALSE(CBool(empty));
    EXPECT_EQ(CInt(true), -1);
    EXPECT_EQ(CLng(true), -1);
    EXPECT_DOUBLE_EQ(CDbl(true), -1.0);

    const Variant null = Variant::Null();
    for (auto convert : {+[](const Variant& v) { CInt(v); }, +[](const Variant& v) { CDbl(v); },
                         +[](const Variant& v) { CStr(v); }, +[](const Variant& v) { CBool(v); }}) {
        EXPECT_EQ(FailureNumber([&] { convert(null); }), err::kInvalidUseOfNull);
    }

    const Variant object(ObjectRef(std::make_shared<Thing>()));
    const Variant array(SafeArray::OneDim(0, 1));
    for (const Variant* v : {&object, &array}) {
        EXPECT_EQ(FailureNumber([&] { CStr(*v); }), err::kTypeMismatch);
        EXPECT_EQ(FailureNumber([&] { CInt(*v); }), err::kTypeMismatch);
        EXPECT_EQ(FailureNumber([&] { CBool(*v); }), err::kTypeMismatch);
    }
    EXPECT_EQ(FailureNumber([] { Variant(1).ToObject(); }), err::kTypeMismatch);
    EXPECT_EQ(FailureNumber([] { Variant("x").ToArray(); }), err::kTypeMismatch);
    EXPECT_TRUE(Variant(ObjectRef()).IsNothing());
    EXPECT_FALSE(Variant(1).IsNothing());
}

TEST(VariantToString, PlainDecimalFormsThatReadBack) {
    EXPECT_EQ(CStr(std::int16_t{-32768}), "-32768");
    EXPECT_EQ(CStr(2147483647), "2147483647");
    EXPECT_EQ(CStr(-0.0), "0");
    EXPECT_EQ(CStr(0.1 + 0.2), "0.3");  // fifteen digits, as the classic text has them
    EXPECT_EQ(CStr(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(CStr(1.0f / 3.0f), "0.3333333");  // seven for a Single
    EXPECT_EQ(CStr(123456789012345.0), "123456789012345");
    EXPECT_EQ(CStr(1e20), "1E+20");
    EXPECT_EQ(CStr(-1.5e-7), "-1.5E-07");
    EXPECT_EQ(CStr(false), "False");
    for (double d : {2.5, -1234.0625, 1e20, 6.02e-23, 99999.99}) EXPECT_EQ(CDbl(CStr(d)), d);
}

TEST(VariantToBoolean, NumbersWordsAndNumericText) {
    for (const auto& [in, out] : {std::pair{Variant(0.001), true},
                                  {Variant(0.0), false},
                                  {Variant("tRUE"), true},
                                  {Variant(" FALSE "), false},
                                  {Variant("5"), true},
                                  {Variant("0"), false},
                                  {Variant("&H1"), true}}) {
        EXPECT_EQ(CBool(in), out) << CStr(in);
    }
    EXPECT_EQ(FailureNumber([] { CBool("yes"); }), err::kTypeMismatch);
    EXPECT_EQ(FailureNumber([] { CBool(""); }), err::kTypeMismatch);
}

// An array is a value: a change through one holder, even the first, leaves every copy alone.
TEST(VariantCopies, AChangeToTheFirstHolderOfAnArrayLeavesItsCopiesAlone) {
    SafeArray rows = SafeArray::OneDim(0, 1);
    rows.Set(0, "kept");
    Variant original(rows);
    const Variant copy = original;
    Variant assigned;
    assigned = original;
    Variant nested(SafeArray::OneDim(0, 0));
    nested.ToArray().Set(0, original);
    original.ToArray().Set(0, "changed");
    EXPECT_EQ(CStr(copy.ToArray().Get(0)), "kept");
    EXPECT_EQ(CStr(assigned.ToArray().Get(0)), "kept");
    EXPECT_EQ(CStr(nested.ToArray().Get(0).ToArray().Get(0)), "kept");
    EXPECT_EQ(CStr(original.ToArray().Get(0)), "changed");
    EXPECT_FALSE(original == copy);
}

TEST(VariantCopies, ObjectsAreSharedAndEqualityIsTypeAndValue) {
    const auto thing = std::make_shared<Thing>();
    const Variant a{ObjectRef(thing)};
    const Variant b = a;
    EXPECT_EQ(b.ToObject().get(), thing.get());
    EXPECT_FALSE(a == Variant(ObjectRef(std::make_shared<Thing>())));
    EXPECT_FALSE(Variant(1) == Variant(std::int16_t{1}));
    EXPECT_FALSE(Variant(1) == Variant("1"));
    EXPECT_FALSE(Variant() == Variant::Null());
    EXPECT_EQ(Variant::Null(), Variant::Null());
}

TEST(VariantCopies, AssigningFromInsideItsOwnArray) {
    SafeArray inner = SafeArray::OneDim(0, 0);
    inner.Set(0, "kept");
    SafeArray outer = SafeArray::OneDim(0, 0);
    outer.Set(0, Variant(inner));
    Variant v(outer);
    v = v.ToArray().Get(0);  // the source dies with the old value
    EXPECT_EQ(CStr(v.ToArray().Get(0)), "kept");
    Variant moved(std::move(v));
    EXPECT_TRUE(v.IsEmpty());  // NOLINT(bugprone-use-after-move): moved-from is Empty
    EXPECT_TRUE(moved.IsArray());
}

}  // namespace
