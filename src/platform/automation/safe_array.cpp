#include "platform/automation/safe_array.h"

#include <limits>
#include <new>
#include <stdexcept>

#include "platform/automation/failure.h"

namespace kw::automation {
namespace {

[[noreturn]] void Fail(int number) {
    throw Failure(number);
}

// Elements of one dimension; an upper bound one below the lower one is an empty dimension.
std::size_t Extent(std::int32_t lower, std::int32_t upper) {
    const std::int64_t count = std::int64_t{upper} - std::int64_t{lower} + 1;
    if (count < 0)
        Fail(err::kSubscriptOutOfRange);
    return static_cast<std::size_t>(count);
}

Variant NewElement(SafeArray::ElementType type) {
    return type == SafeArray::ElementType::String ? Variant(std::string()) : Variant();
}

std::vector<Variant> MakeElements(std::size_t count, SafeArray::ElementType type) {
    try {
        return std::vector<Variant>(count, NewElement(type));
    } catch (const std::bad_alloc&) {
        Fail(err::kOutOfMemory);
    } catch (const std::length_error&) {
        Fail(err::kOutOfMemory);
    }
}

}  // namespace

SafeArray::SafeArray() : bounds_{{0, -1}} {}

SafeArray SafeArray::OneDim(std::int32_t lower, std::int32_t upper, ElementType type) {
    SafeArray a;
    a.bounds_ = {{lower, upper}};
    a.type_ = type;
    a.elements_ = MakeElements(Extent(lower, upper), type);
    return a;
}

SafeArray SafeArray::TwoDim(std::int32_t lower1, std::int32_t upper1, std::int32_t lower2,
                            std::int32_t upper2, ElementType type) {
    const std::size_t rows = Extent(lower1, upper1);
    const std::size_t fields = Extent(lower2, upper2);
    if (rows != 0 && fields > std::numeric_limits<std::size_t>::max() / rows) {
        Fail(err::kOutOfMemory);
    }
    SafeArray a;
    a.bounds_ = {{lower1, upper1}, {lower2, upper2}};
    a.type_ = type;
    a.elements_ = MakeElements(rows * fields, type);
    return a;
}

int SafeArray::Dims() const {
    return static_cast<int>(bounds_.size());
}

std::int32_t SafeArray::LBound(int dim) const {
    if (dim < 1 || dim > Dims())
        Fail(err::kSubscriptOutOfRange);
    return bounds_[static_cast<std::size_t>(dim - 1)].lower;
}

std::int32_t SafeArray::UBound(int dim) const {
    if (dim < 1 || dim > Dims())
        Fail(err::kSubscriptOutOfRange);
    return bounds_[static_cast<std::size_t>(dim - 1)].upper;
}

std::size_t SafeArray::Count() const {
    return elements_.size();
}

SafeArray::ElementType SafeArray::Element() const {
    return type_;
}

std::size_t SafeArray::Offset(std::int32_t i) const {
    if (Dims() != 1)
        Fail(err::kSubscriptOutOfRange);
    const Bound& b = bounds_[0];
    if (i < b.lower || i > b.upper)
        Fail(err::kSubscriptOutOfRange);
    return static_cast<std::size_t>(std::int64_t{i} - b.lower);
}

std::size_t SafeArray::Offset(std::int32_t row, std::int32_t field) const {
    if (Dims() != 2)
        Fail(err::kSubscriptOutOfRange);
    const Bound& r = bounds_[0];
    const Bound& f = bounds_[1];
    if (row < r.lower || row > r.upper || field < f.lower || field > f.upper) {
        Fail(err::kSubscriptOutOfRange);
    }
    const std::size_t rows = Extent(r.lower, r.upper);
    return static_cast<std::size_t>(std::int64_t{row} - r.lower) +
           static_cast<std::size_t>(std::int64_t{field} - f.lower) * rows;
}

const Variant& SafeArray::Get(std::int32_t i) const {
    return elements_[Offset(i)];
}

const Variant& SafeArray::Get(std::int32_t row, std::int32_t field) const {
    return elements_[Offset(row, field)];
}

void SafeArray::Set(std::int32_t i, const Variant& value) {
    const std::size_t at = Offset(i);
    elements_[at] = type_ == ElementType::String ? Variant(value.ToString()) : value;
}

void SafeArray::Set(std::int32_t row, std::int32_t field, const Variant& value) {
    const std::size_t at = Offset(row, field);
    elements_[at] = type_ == ElementType::String ? Variant(value.ToString()) : value;
}

const std::vector<Variant>& SafeArray::Storage() const {
    return elements_;
}

bool SafeArray::operator==(const SafeArray& other) const {
    return bounds_ == other.bounds_ && type_ == other.type_ && elements_ == other.elements_;
}

}  // namespace kw::automation
