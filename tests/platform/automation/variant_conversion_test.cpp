#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "platform/automation/failure_number.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

using namespace kw::automation;

namespace {

struct Thing : Object {};

TEST(VariantToInteger, RoundsHalvesToEven) {
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(-3.5), -4);
    EXPECT_EQ(CInt(2.5000001), 3);
    EXPECT_EQ(CInt(2.4999999), 2);
    EXPECT_EQ(CInt(0.5f), 0);
    EXPECT_EQ(CInt(1.5f), 2);
    EXPECT_EQ(CLng(4.5), 4);
    EXPECT_EQ(CLng(-0.5), 0);
    EXPECT_EQ(CInt("2.5"), 2);
    EXPECT_EQ(CLng("5.5"), 6);
}

TEST(VariantToInteger, OverflowsAtTheSixteenBitEdges) {
    EXPECT_EQ(CInt(32767), 32767);
    EXPECT_EQ(CInt(-32768), -32768);
    EXPECT_EQ(CInt(32767.4), 32767);
    EXPECT_EQ(CInt(-32768.5), -32768);  // rounds to the even -32768
    EXPECT_EQ(FailureNumber([] { CInt(32768); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CInt(32767.5); }), err::kOverflow);  // rounds to 32768
    EXPECT_EQ(FailureNumber([] { CInt(-32769); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CInt(-32769.5); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CInt("40000"); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CInt(std::numeric_limits<double>::quiet_NaN()); }),
              err::kOverflow);
}

TEST(VariantToLong, OverflowsAtTheThirtyTwoBitEdges) {
    EXPECT_EQ(CLng(2147483647.0), 2147483647);
    EXPECT_EQ(CLng("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(CLng(-2147483648.5), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(FailureNumber([] { CLng(2147483648.0); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CLng("2147483647.5"); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CLng(-2147483649.0); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CLng(1e300); }), err::kOverflow);
}

TEST(VariantFromText, ReadsNumbersWithBlanksLeadingZerosAndHex) {
    EXPECT_EQ(CInt("07"), 7);
    EXPECT_EQ(CInt("  42  "), 42);
    EXPECT_EQ(CInt("\t-3 "), -3);
    EXPECT_EQ(CInt("+5"), 5);
    EXPECT_EQ(CInt("&H1F"), 31);
    EXPECT_EQ(CInt("&h1f"), 31);
    EXPECT_EQ(CInt("&O17"), 15);
    EXPECT_EQ(CInt("&HFFFF"), -1);  // sixteen bits read as two's complement
    EXPECT_EQ(CLng("&H10000"), 65536);
    EXPECT_EQ(CLng("&HFFFFFFFF"), -1);
    EXPECT_EQ(CLng("1E3"), 1000);
    EXPECT_EQ(CLng("1.5D2"), 150);
    EXPECT_DOUBLE_EQ(CDbl(".25"), 0.25);
    EXPECT_DOUBLE_EQ(CDbl("3."), 3.0);
    EXPECT_DOUBLE_EQ(CDbl(" -1.25e-2 "), -0.0125);
    EXPECT_FLOAT_EQ(CSng("0.1"), 0.1f);
}

TEST(VariantFromText, TextThatIsNotANumberIsATypeMismatch) {
    for (const char* text :
         {"", " ", "abc", "12abc", "1 2", "1.2.3", "&H", "&HG", "--1", ".", "1e", "e5", "True"}) {
        EXPECT_EQ(FailureNumber([&] { CInt(text); }), err::kTypeMismatch) << '"' << text << '"';
        EXPECT_EQ(FailureNumber([&] { CDbl(text); }), err::kTypeMismatch) << '"' << text << '"';
    }
    EXPECT_EQ(FailureNumber([] { CDbl("1e400"); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CLng("&H100000000"); }), err::kOverflow);
    EXPECT_DOUBLE_EQ(CDbl("1e-400"), 0.0);
}

TEST(VariantConversions, EmptyBooleanNullObjectAndArray) {
    const Variant empty;
    EXPECT_EQ(CInt(empty), 0);
    EXPECT_EQ(CLng(empty), 0);
    EXPECT_EQ(CDbl(empty), 0.0);
    EXPECT_EQ(CStr(empty), "");
    EXPECT_FALSE(CBool(empty));
    EXPECT_EQ(CInt(true), -1);
    EXPECT_EQ(CInt(false), 0);
    EXPECT_EQ(CLng(true), -1);
    EXPECT_DOUBLE_EQ(CDbl(true), -1.0);

    const Variant null = Variant::Null();
    EXPECT_EQ(FailureNumber([&] { CInt(null); }), err::kInvalidUseOfNull);
    EXPECT_EQ(FailureNumber([&] { CLng(null); }), err::kInvalidUseOfNull);
    EXPECT_EQ(FailureNumber([&] { CDbl(null); }), err::kInvalidUseOfNull);
    EXPECT_EQ(FailureNumber([&] { CStr(null); }), err::kInvalidUseOfNull);
    EXPECT_EQ(FailureNumber([&] { CBool(null); }), err::kInvalidUseOfNull);

    const Variant object(ObjectRef(std::make_shared<Thing>()));
    const Variant array(SafeArray::OneDim(0, 1));
    for (const Variant* v : {&object, &array}) {
        EXPECT_EQ(FailureNumber([&] { CStr(*v); }), err::kTypeMismatch);
        EXPECT_EQ(FailureNumber([&] { CInt(*v); }), err::kTypeMismatch);
        EXPECT_EQ(FailureNumber([&] { CBool(*v); }), err::kTypeMismatch);
    }
    EXPECT_EQ(FailureNumber([] { Variant(1).ToObject(); }), err::kTypeMismatch);
    EXPECT_EQ(FailureNumber([] { Variant("x").ToArray(); }), err::kTypeMismatch);
    EXPECT_FALSE(Variant(1).IsNothing());
    EXPECT_TRUE(Variant(ObjectRef()).IsNothing());
    EXPECT_EQ(Variant(ObjectRef()).ToObject(), nullptr);
}

TEST(VariantToString, PlainDecimalForms) {
    EXPECT_EQ(CStr(std::int16_t{-32768}), "-32768");
    EXPECT_EQ(CStr(2147483647), "2147483647");
    EXPECT_EQ(CStr(2.5), "2.5");
    EXPECT_EQ(CStr(3.0), "3");
    EXPECT_EQ(CStr(-0.0), "0");
    EXPECT_EQ(CStr(0.1 + 0.2), "0.3");  // fifteen digits, as the classic text has them
    EXPECT_EQ(CStr(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(CStr(0.1f), "0.1");  // seven digits for a Single
    EXPECT_EQ(CStr(1.0f / 3.0f), "0.3333333");
    EXPECT_EQ(CStr(123456789012345.0), "123456789012345");
    EXPECT_EQ(CStr(1e20), "1E+20");
    EXPECT_EQ(CStr(-1.5e-7), "-1.5E-07");
    EXPECT_EQ(CStr(true), "True");
    EXPECT_EQ(CStr(false), "False");
    EXPECT_EQ(CStr("as is "), "as is ");
    // What ToString writes reads back to the same value.
    for (double d : {2.5, -1234.0625, 1e20, 6.02e-23, 99999.99}) EXPECT_EQ(CDbl(CStr(d)), d);
}

TEST(VariantToSingle, OverflowsBeyondTheSingleRange) {
    EXPECT_FLOAT_EQ(CSng(3.4e38), 3.4e38f);
    EXPECT_EQ(FailureNumber([] { CSng(3.5e38); }), err::kOverflow);
    EXPECT_EQ(FailureNumber([] { CSng("-1e39"); }), err::kOverflow);
    EXPECT_DOUBLE_EQ(CDbl(1e300), 1e300);
}

TEST(VariantToBoolean, NumbersWordsAndNumericText) {
    EXPECT_TRUE(CBool(-1));
    EXPECT_TRUE(CBool(0.001));
    EXPECT_FALSE(CBool(0.0));
    EXPECT_FALSE(CBool(std::int16_t{0}));
    EXPECT_TRUE(CBool("True"));
    EXPECT_TRUE(CBool("tRUE"));
    EXPECT_FALSE(CBool(" FALSE "));
    EXPECT_TRUE(CBool("5"));
    EXPECT_FALSE(CBool("0"));
    EXPECT_TRUE(CBool("&H1"));
    EXPECT_EQ(FailureNumber([] { CBool("yes"); }), err::kTypeMismatch);
    EXPECT_EQ(FailureNumber([] { CBool(""); }), err::kTypeMismatch);
}

TEST(VariantIsNumeric, FollowsWhatTheConversionsAccept) {
    EXPECT_TRUE(Variant().IsNumeric());
    EXPECT_TRUE(Variant(true).IsNumeric());
    EXPECT_TRUE(Variant(" 07 ").IsNumeric());
    EXPECT_TRUE(Variant("&HFF").IsNumeric());
    EXPECT_FALSE(Variant("12abc").IsNumeric());
    EXPECT_FALSE(Variant("").IsNumeric());
    EXPECT_FALSE(Variant("1e400").IsNumeric());
    EXPECT_FALSE(Variant::Null().IsNumeric());
    EXPECT_FALSE(Variant(SafeArray()).IsNumeric());
}

TEST(VariantCopies, ArraysAreCopiedObjectsAreShared) {
    SafeArray rows = SafeArray::OneDim(1, 2);
    rows.Set(1, "first");
    Variant original(rows);
    Variant copy = original;
    copy.ToArray().Set(1, "changed");
    EXPECT_EQ(CStr(original.ToArray().Get(1)), "first");
    EXPECT_EQ(CStr(copy.ToArray().Get(1)), "changed");
    EXPECT_FALSE(original == copy);

    Variant assigned;
    assigned = original;
    EXPECT_EQ(assigned, original);
    assigned.ToArray().Set(2, 5);
    EXPECT_TRUE(original.ToArray().Get(2).IsEmpty());

    const auto thing = std::make_shared<Thing>();
    Variant a{ObjectRef(thing)};
    Variant b = a;
    EXPECT_EQ(b.ToObject().get(), thing.get());
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a == Variant(ObjectRef(std::make_shared<Thing>())));
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

TEST(VariantEquality, SameTypeAndValue) {
    EXPECT_EQ(Variant(1), Variant(1));
    EXPECT_FALSE(Variant(1) == Variant(std::int16_t{1}));
    EXPECT_FALSE(Variant(1) == Variant("1"));
    EXPECT_EQ(Variant::Null(), Variant::Null());
    EXPECT_FALSE(Variant() == Variant::Null());
    EXPECT_EQ(Variant(SafeArray::OneDim(0, 2)), Variant(SafeArray::OneDim(0, 2)));
    EXPECT_FALSE(Variant(SafeArray::OneDim(0, 2)) == Variant(SafeArray::OneDim(1, 3)));
}

TEST(VariantTypes, TypeAndTypeName) {
    EXPECT_EQ(Variant().Type(), VarType::Empty);
    EXPECT_EQ(Variant(std::int16_t{1}).Type(), VarType::Integer);
    EXPECT_EQ(Variant(1).Type(), VarType::Long);
    EXPECT_EQ(Variant(1.0f).Type(), VarType::Single);
    EXPECT_EQ(Variant(1.0).Type(), VarType::Double);
    EXPECT_EQ(Variant("x").Type(), VarType::String);
    EXPECT_EQ(Variant(true).Type(), VarType::Boolean);
    EXPECT_EQ(TypeName(Variant(ObjectRef())), "Nothing");
    EXPECT_EQ(TypeName(Variant(ObjectRef(std::make_shared<Thing>()))), "Object");
    EXPECT_EQ(TypeName(Variant(SafeArray())), "Variant()");
    EXPECT_EQ(TypeName(Variant::FromArray(SafeArray::OneDim(0, 1, SafeArray::ElementType::String))),
              "String()");
    EXPECT_EQ(TypeName(Variant::Null()), "Null");
}

}  // namespace
