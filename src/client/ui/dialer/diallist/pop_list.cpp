#include "client/ui/dialer/diallist/pop_list.h"

namespace kw::dialer {

std::shared_ptr<POPInfo> POPList::Add(const std::string& ispName, const std::string& cost,
                                      const std::string& location, const std::string& phoneNumber,
                                      const std::string& key) {
    auto info = std::make_shared<POPInfo>();
    info->ispName = ispName;
    info->cost = cost;
    info->location = location;
    info->phoneNumber = phoneNumber;
    items_.Add(info, key);
    return info;
}

std::shared_ptr<POPInfo> POPList::item(const automation::Variant& index) const {
    return items_.item(index);
}

}  // namespace kw::dialer
