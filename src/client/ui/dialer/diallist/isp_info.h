#pragma once

#include <memory>

#include "client/ui/dialer/diallist/pop_list.h"
#include "platform/automation/variant.h"

namespace kw::dialer {

// One ISP and its numbers. A new one holds an empty name: that emptiness is how ISPList.find
// says that it found nothing.
class ISPInfo {
  public:
    // Created on the first read.
    const std::shared_ptr<dialer::POPList>& POPList();
    void SetPOPList(std::shared_ptr<dialer::POPList> list) { popList_ = std::move(list); }

    // Holds a string in use; may hold an object reference, which a read gives back as it is.
    const automation::Variant& ispName() const { return ispName_; }
    void SetIspName(automation::Variant name) { ispName_ = std::move(name); }

  private:
    std::shared_ptr<dialer::POPList> popList_;
    automation::Variant ispName_;
};

}  // namespace kw::dialer
