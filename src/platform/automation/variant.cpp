#include "platform/automation/variant.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/automation/failure.h"
#include "platform/automation/number_text.h"
#include "platform/automation/safe_array.h"

namespace kw::automation {
namespace {

// Indices of Variant::value_'s alternatives.
enum Index : std::size_t {
    kEmpty,
    kNull,
    kInteger,
    kLong,
    kSingle,
    kDouble,
    kString,
    kObject,
    kBoolean,
    kArray
};

[[noreturn]] void Fail(int number) {
    throw Failure(number);
}

// Banker's rounding, as every classic integer conversion does it: halves go to the even side.
double RoundHalfEven(double x) {
    double r = std::floor(x);
    const double fraction = x - r;
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(r, 2.0) != 0.0))
        r += 1.0;
    return r;
}

// Shortest classic text: 7 significant digits for a Single, 15 for a Double, exponent form
// ("1E+20", "1.5E-07") only when plain digits would not do.
std::string FormatFloat(double value, int precision) {
    if (value == 0.0)
        return "0";  // also -0
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value > 0 ? "Inf" : "-Inf";
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precision);
    std::string text(buffer, result.ptr);
    std::replace(text.begin(), text.end(), 'e', 'E');
    return text;
}

std::string LowerAscii(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string_view TrimBlanks(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

double NumberFromText(const std::string& text) {
    const auto n = detail::ParseNumber(text);
    if (!n)
        Fail(err::kTypeMismatch);
    if (n->overflow)
        Fail(err::kOverflow);
    return n->value;
}

}  // namespace

Variant::Variant() = default;
Variant::Variant(std::int16_t value) : value_(value) {}
Variant::Variant(std::int32_t value) : value_(value) {}
Variant::Variant(float value) : value_(value) {}
Variant::Variant(double value) : value_(value) {}
Variant::Variant(bool value) : value_(value) {}
Variant::Variant(std::string value) : value_(std::move(value)) {}
Variant::Variant(const char* value) : value_(std::string(value ? value : "")) {}
Variant::Variant(ObjectRef value) : value_(std::move(value)) {}
Variant::Variant(SafeArray value) : value_(std::make_shared<SafeArray>(std::move(value))) {}

Variant Variant::Null() {
    Variant v;
    v.value_ = NullTag{};
    return v;
}

Variant Variant::FromArray(SafeArray value) {
    return Variant(std::move(value));
}

Variant::Variant(const Variant& other) = default;

Variant::Variant(Variant&& other) noexcept : value_(std::move(other.value_)) {
    other.value_ = std::monostate{};
}

Variant& Variant::operator=(const Variant& other) {
    // Copy first: other may live inside the array this holds.
    if (this != &other) {
        Variant copy(other);
        value_ = std::move(copy.value_);
    }
    return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept {
    if (this != &other) {
        Value taken = std::move(other.value_);
        other.value_ = std::monostate{};
        value_ = std::move(taken);
    }
    return *this;
}

Variant::~Variant() = default;

VarType Variant::Type() const {
    switch (value_.index()) {
        case kEmpty:
            return VarType::Empty;
        case kNull:
            return VarType::Null;
        case kInteger:
            return VarType::Integer;
        case kLong:
            return VarType::Long;
        case kSingle:
            return VarType::Single;
        case kDouble:
            return VarType::Double;
        case kString:
            return VarType::String;
        case kObject:
            return VarType::Object;
        case kBoolean:
            return VarType::Boolean;
        default:
            return VarType::Array;
    }
}

bool Variant::IsNothing() const {
    return value_.index() == kObject && std::get<kObject>(value_) == nullptr;
}

bool Variant::IsNumeric() const {
    switch (value_.index()) {
        case kEmpty:
        case kInteger:
        case kLong:
        case kSingle:
        case kDouble:
        case kBoolean:
            return true;
        case kString: {
            const auto n = detail::ParseNumber(std::get<kString>(value_));
            return n && !n->overflow;
        }
        default:
            return false;
    }
}

std::string Variant::ToString() const {
    switch (value_.index()) {
        case kEmpty:
            return {};
        case kNull:
            Fail(err::kInvalidUseOfNull);
        case kInteger:
            return std::to_string(std::get<kInteger>(value_));
        case kLong:
            return std::to_string(std::get<kLong>(value_));
        case kSingle:
            return FormatFloat(static_cast<double>(std::get<kSingle>(value_)), 7);
        case kDouble:
            return FormatFloat(std::get<kDouble>(value_), 15);
        case kString:
            return std::get<kString>(value_);
        case kBoolean:
            return std::get<kBoolean>(value_) ? "True" : "False";
        default:
            Fail(err::kTypeMismatch);
    }
}

// Every numeric conversion goes through the Double value; Integer and Long are exact there.
double Variant::ToDouble() const {
    switch (value_.index()) {
        case kEmpty:
            return 0.0;
        case kNull:
            Fail(err::kInvalidUseOfNull);
        case kInteger:
            return std::get<kInteger>(value_);
        case kLong:
            return std::get<kLong>(value_);
        case kSingle:
            return static_cast<double>(std::get<kSingle>(value_));
        case kDouble:
            return std::get<kDouble>(value_);
        case kString:
            return NumberFromText(std::get<kString>(value_));
        case kBoolean:
            return std::get<kBoolean>(value_) ? -1.0 : 0.0;
        default:
            Fail(err::kTypeMismatch);
    }
}

std::int16_t Variant::ToInteger() const {
    if (value_.index() == kInteger)
        return std::get<kInteger>(value_);
    const double r = RoundHalfEven(ToDouble());
    if (!(r >= -32768.0 && r <= 32767.0))
        Fail(err::kOverflow);
    return static_cast<std::int16_t>(r);
}

std::int32_t Variant::ToLong() const {
    if (value_.index() == kLong)
        return std::get<kLong>(value_);
    const double r = RoundHalfEven(ToDouble());
    if (!(r >= -2147483648.0 && r <= 2147483647.0))
        Fail(err::kOverflow);
    return static_cast<std::int32_t>(r);
}

float Variant::ToSingle() const {
    if (value_.index() == kSingle)
        return std::get<kSingle>(value_);
    const double d = ToDouble();
    if (std::fabs(d) > static_cast<double>(std::numeric_limits<float>::max()) && !std::isnan(d)) {
        Fail(err::kOverflow);
    }
    return static_cast<float>(d);
}

bool Variant::ToBoolean() const {
    switch (value_.index()) {
        case kBoolean:
            return std::get<kBoolean>(value_);
        case kString: {
            const std::string word = LowerAscii(TrimBlanks(std::get<kString>(value_)));
            if (word == "true")
                return true;
            if (word == "false")
                return false;
            return NumberFromText(std::get<kString>(value_)) != 0.0;
        }
        default:
            return ToDouble() != 0.0;
    }
}

ObjectRef Variant::ToObject() const {
    if (value_.index() != kObject)
        Fail(err::kTypeMismatch);
    return std::get<kObject>(value_);
}

const SafeArray& Variant::ToArray() const {
    if (value_.index() != kArray)
        Fail(err::kTypeMismatch);
    return *std::get<kArray>(value_);
}

SafeArray& Variant::ToArray() {
    if (value_.index() != kArray)
        Fail(err::kTypeMismatch);
    ArrayPtr& array = std::get<kArray>(value_);
    if (array.use_count() > 1) {
        array = std::make_shared<SafeArray>(*array);  // the other holders keep what they had
    }
    return *array;
}

bool Variant::operator==(const Variant& other) const {
    if (value_.index() != other.value_.index())
        return false;
    if (value_.index() == kArray)
        return *std::get<kArray>(value_) == *std::get<kArray>(other.value_);
    return value_ == other.value_;
}

std::string TypeName(const Variant& v) {
    switch (v.Type()) {
        case VarType::Empty:
            return "Empty";
        case VarType::Null:
            return "Null";
        case VarType::Integer:
            return "Integer";
        case VarType::Long:
            return "Long";
        case VarType::Single:
            return "Single";
        case VarType::Double:
            return "Double";
        case VarType::String:
            return "String";
        case VarType::Boolean:
            return "Boolean";
        case VarType::Object:
            return v.IsNothing() ? "Nothing" : "Object";
        default:
            return v.ToArray().Element() == SafeArray::ElementType::String ? "String()"
                                                                           : "Variant()";
    }
}

std::string CStr(const Variant& v) {
    return v.ToString();
}
std::int16_t CInt(const Variant& v) {
    return v.ToInteger();
}
std::int32_t CLng(const Variant& v) {
    return v.ToLong();
}
float CSng(const Variant& v) {
    return v.ToSingle();
}
double CDbl(const Variant& v) {
    return v.ToDouble();
}
bool CBool(const Variant& v) {
    return v.ToBoolean();
}

}  // namespace kw::automation
