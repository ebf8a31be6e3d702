#include "client/ui/dialer/diallist/cpop_cell.h"

#include <cstdint>

#include "platform/automation/variant.h"

namespace kw::dialer {

void CpopCell::SwapIndex(CpopCell& moved, CpopCell& other) {
    const std::int16_t index = automation::CInt(automation::Variant(moved.popIndex));
    moved.popIndex = other.popIndex;
    other.popIndex = std::to_string(index);
}

}  // namespace kw::dialer
