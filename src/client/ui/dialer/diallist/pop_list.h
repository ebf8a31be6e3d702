#pragma once

#include <memory>
#include <string>
#include <vector>

#include "client/ui/dialer/diallist/keyed_collection.h"
#include "client/ui/dialer/diallist/pop_info.h"

namespace kw::dialer {

// The numbers of one ISP, in the order they were added.
class POPList {
  public:
    // The key goes last; an empty key adds without one, a key used before fails.
    std::shared_ptr<POPInfo> Add(const std::string& ispName, const std::string& cost,
                                 const std::string& location, const std::string& phoneNumber,
                                 const std::string& key);
    std::shared_ptr<POPInfo> item(const automation::Variant& index) const;
    std::int32_t Count() const { return items_.Count(); }
    void remove(const automation::Variant& index) { items_.remove(index); }
    std::vector<std::shared_ptr<POPInfo>> NewEnum() const { return items_.NewEnum(); }

  private:
    KeyedCollection<POPInfo> items_;
};

}  // namespace kw::dialer
