#include "client/ui/dialer/diallist/isp_info.h"

namespace kw::dialer {

const std::shared_ptr<POPList>& ISPInfo::POPList() {
    if (!popList_) {
        popList_ = std::make_shared<dialer::POPList>();
    }
    return popList_;
}

}  // namespace kw::dialer
