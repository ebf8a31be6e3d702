#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kw::automation {

// The value types of the automation model, numbered as the classic VarType numbers.
enum class VarType : int {
    Empty = 0,
    Null = 1,
    Integer = 2,
    Long = 3,
    Single = 4,
    Double = 5,
    String = 8,
    Object = 9,
    Boolean = 11,
    Variant = 12,
    Array = 0x2000,
};

// Base of everything an object reference can point at (the engine, collections, records).
class Object {
  public:
    virtual ~Object() = default;
};
using ObjectRef = std::shared_ptr<Object>;

class SafeArray;

// A value as automation passes it: copied as a value, except object references, which are shared.
class Variant {
  public:
    Variant();  // Empty
    Variant(std::int16_t value);
    Variant(std::int32_t value);
    Variant(float value);
    Variant(double value);
    Variant(bool value);
    Variant(std::string value);
    Variant(const char* value);
    Variant(ObjectRef value);  // possibly empty: "Nothing"
    Variant(SafeArray value);

    static Variant Null();
    // Same as Variant(SafeArray), for call sites where the array type is not obvious.
    static Variant FromArray(SafeArray value);

    Variant(const Variant& other);
    Variant(Variant&& other) noexcept;
    Variant& operator=(const Variant& other);
    Variant& operator=(Variant&& other) noexcept;
    ~Variant();

    VarType Type() const;
    bool IsEmpty() const { return Type() == VarType::Empty; }
    bool IsNull() const { return Type() == VarType::Null; }
    bool IsArray() const { return Type() == VarType::Array; }
    bool IsObject() const { return Type() == VarType::Object; }
    bool IsNothing() const;  // an object reference that points at nothing
    // Empty, Integer, Long, Single, Double, Boolean, or text that is a number.
    bool IsNumeric() const;

    // Conversions with the classic rules; they fail with 13 (type mismatch), 6 (overflow) or,
    // from Null, 94. Integer and Long round halves to even (2.5 -> 2, 3.5 -> 4); text is read as
    // a number with blanks around it allowed, &H hex and &O octal too.
    std::string ToString() const;
    std::int16_t ToInteger() const;
    std::int32_t ToLong() const;
    float ToSingle() const;
    double ToDouble() const;
    bool ToBoolean() const;
    ObjectRef ToObject() const;        // fails with 13 unless an object reference
    const SafeArray& ToArray() const;  // fails with 13 unless an array
    SafeArray& ToArray();

    // Same type and same value (arrays element by element, objects by identity).
    bool operator==(const Variant& other) const;

  private:
    struct NullTag {
        bool operator==(const NullTag&) const = default;
    };
    // Never null. Copies share the array until one of them is changed through ToArray(): a
    // phone book of tens of thousands of rows passes from event to handler to field uncopied.
    using ArrayPtr = std::shared_ptr<SafeArray>;
    using Value = std::variant<std::monostate, NullTag, std::int16_t, std::int32_t, float, double,
                               std::string, ObjectRef, bool, ArrayPtr>;
    Value value_;
};

// The classic TypeName: "Integer", "String", "Nothing", "Variant()", ...
std::string TypeName(const Variant& v);

// Free conversions named as the program calls them.
std::string CStr(const Variant& v);
std::int16_t CInt(const Variant& v);
std::int32_t CLng(const Variant& v);
float CSng(const Variant& v);
double CDbl(const Variant& v);
bool CBool(const Variant& v);

}  // namespace kw::automation
