#pragma once

#include <cstdint>
#include <vector>

#include "platform/automation/variant.h"

namespace kw::automation {

// An automation array of one or two dimensions, each with its own bounds. Elements are stored
// with the first subscript varying fastest, as automation lays them out.
class SafeArray {
  public:
    enum class ElementType { Variant, String };

    SafeArray();  // one dimension, no elements (LBound 0, UBound -1)
    static SafeArray OneDim(std::int32_t lower, std::int32_t upper,
                            ElementType type = ElementType::Variant);
    static SafeArray TwoDim(std::int32_t lower1, std::int32_t upper1, std::int32_t lower2,
                            std::int32_t upper2, ElementType type = ElementType::Variant);

    int Dims() const;
    std::int32_t LBound(int dim = 1) const;  // dim outside 1..Dims fails with 9
    std::int32_t UBound(int dim = 1) const;
    std::size_t Count() const;
    ElementType Element() const;

    // Subscripts outside the bounds, or the wrong number of them, fail with 9.
    const Variant& Get(std::int32_t i) const;
    const Variant& Get(std::int32_t row, std::int32_t field) const;
    // A String array converts what it is given to text.
    void Set(std::int32_t i, const Variant& value);
    void Set(std::int32_t row, std::int32_t field, const Variant& value);

    // The elements in storage order.
    const std::vector<Variant>& Storage() const;

    bool operator==(const SafeArray& other) const;

  private:
    struct Bound {
        std::int32_t lower;
        std::int32_t upper;
        bool operator==(const Bound&) const = default;
    };
    std::size_t Offset(std::int32_t i) const;
    std::size_t Offset(std::int32_t row, std::int32_t field) const;

    std::vector<Bound> bounds_;
    ElementType type_ = ElementType::Variant;
    std::vector<Variant> elements_;
};

}  // namespace kw::automation
