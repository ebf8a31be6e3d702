#include "client/ui/dialer/side/ip_utils.h"

namespace kw::dialer {

namespace {
constexpr std::int16_t kBackspace = 8;
}

std::string ReadIPFields(const IPBoxes& boxes) {
    return boxes[0]->Text() + "." + boxes[1]->Text() + "." + boxes[2]->Text() + "." +
           boxes[3]->Text();
}

std::int16_t FilterIPKey(forms::Platform& platform, std::int16_t key) {
    if (key != kBackspace && key != '.' && (key > '9' || key < '0')) {
        platform.Beep();
        return 0;
    }
    return key;
}

std::int16_t HandleIPKey(forms::Platform& platform, std::int16_t& index, std::int16_t& key,
                         const IPBoxes& boxes, bool backward) {
    key = FilterIPKey(platform, key);
    if (key != '.') {
        return key;
    }
    if (backward) {
        if (index >= 1) {
            boxes[static_cast<std::size_t>(index - 1)]->SetFocus();
        }
    } else if (index < 3) {
        boxes[static_cast<std::size_t>(index + 1)]->SetFocus();
    }
    key = 0;
    return key;
}

void WriteIPFields(const std::string& address, const IPBoxes& boxes) {
    if (address.empty()) {
        for (forms::TextBox* box : boxes) {
            box->SetText("");
        }
    }
    const std::size_t first = address.find('.');
    if (first == std::string::npos) {
        return;
    }
    boxes[0]->SetText(address.substr(0, first));
    const std::size_t second = address.find('.', first + 1);
    if (second == std::string::npos) {
        return;
    }
    boxes[1]->SetText(address.substr(first + 1, second - first - 1));
    const std::size_t third = address.find('.', second + 1);
    if (third == std::string::npos) {
        return;
    }
    boxes[2]->SetText(address.substr(second + 1, third - second - 1));
    boxes[3]->SetText(address.substr(third + 1));
}

}  // namespace kw::dialer
