#pragma once

#include <string>

namespace kw::dialer {

// One telephone number of an ISP. A new one has four empty strings.
class POPInfo {
  public:
    std::string phoneNumber;
    std::string location;
    std::string cost;  // cost as text
    std::string ispName;
};

}  // namespace kw::dialer
