#include "client/ui/dialer/diallist/isp_list.h"

namespace kw::dialer {

std::shared_ptr<ISPInfo> ISPList::find(const std::string& name, const ISPList& list) const {
    for (const auto& entry : list.NewEnum()) {
        // Compared as variants: an empty name reads as "".
        if (automation::CStr(entry->ispName()) == name) {
            return entry;
        }
    }
    return std::make_shared<ISPInfo>();
}

std::shared_ptr<ISPInfo> ISPList::Add(const automation::Variant& ispName, const std::string& key) {
    auto info = std::make_shared<ISPInfo>();
    info->SetIspName(ispName);
    items_.Add(info, key);
    return info;
}

std::shared_ptr<ISPInfo> ISPList::item(const automation::Variant& index) const {
    return items_.item(index);
}

}  // namespace kw::dialer
