#pragma once

#include <memory>
#include <string>
#include <vector>

#include "client/ui/dialer/diallist/isp_info.h"
#include "client/ui/dialer/diallist/keyed_collection.h"

namespace kw::dialer {

// The ISPs of a dial list, in the order they were added.
class ISPList {
  public:
    // Searches list, the argument, not this object: the first entry whose name equals name,
    // case-sensitive; on a miss a new ISPInfo that belongs to no list, never nothing.
    std::shared_ptr<ISPInfo> find(const std::string& name, const ISPList& list) const;
    std::shared_ptr<ISPInfo> Add(const automation::Variant& ispName, const std::string& key);
    std::shared_ptr<ISPInfo> item(const automation::Variant& index) const;
    std::int32_t Count() const { return items_.Count(); }
    void remove(const automation::Variant& index) { items_.remove(index); }
    std::vector<std::shared_ptr<ISPInfo>> NewEnum() const { return items_.NewEnum(); }

  private:
    KeyedCollection<ISPInfo> items_;
};

}  // namespace kw::dialer
