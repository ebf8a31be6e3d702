#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The splash form.
class frmSplash : public forms::Form {
  public:
    explicit frmSplash(Application& app);
};

}  // namespace kw::dialer
