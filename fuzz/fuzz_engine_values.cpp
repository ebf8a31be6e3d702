// Values from the engine through every conversion the program applies: each gives a value or
// fails with the program's own failure (13, 6, 94), never undefined behaviour. The first byte
// picks the value's type, the rest is its content.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

namespace {

using namespace kw::automation;

template <typename T>
T Bytes(const std::uint8_t* data, std::size_t size) {
    T value{};
    std::memcpy(&value, data, std::min(size, sizeof value));
    return value;
}

Variant Make(std::uint8_t type, const std::uint8_t* data, std::size_t size) {
    switch (type % 9) {
        case 0:
            return Variant(std::string(reinterpret_cast<const char*>(data), size));
        case 1:
            return Variant(Bytes<std::int16_t>(data, size));
        case 2:
            return Variant(Bytes<std::int32_t>(data, size));
        case 3:
            return Variant(Bytes<float>(data, size));
        case 4:
            return Variant(Bytes<double>(data, size));
        case 5:
            return Variant(size > 0 && data[0] % 2 == 1);
        case 6:
            return Variant::Null();
        case 7: {
            SafeArray a = SafeArray::OneDim(Bytes<std::int32_t>(data, size) % 4, 1);
            return Variant(std::move(a));
        }
        default:
            return Variant();
    }
}

template <typename F>
void Try(F convert) {
    try {
        convert();
    } catch (const Failure&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    Variant v;
    try {
        v = Make(data[0], data + 1, size - 1);
    } catch (const Failure&) {
        return 0;
    }
    Try([&] { (void)CStr(v); });
    Try([&] { (void)CInt(v); });
    Try([&] { (void)CLng(v); });
    Try([&] { (void)CSng(v); });
    Try([&] { (void)CDbl(v); });
    Try([&] { (void)CBool(v); });
    Try([&] { (void)v.IsNumeric(); });
    Try([&] { (void)TypeName(v); });
    return 0;
}
