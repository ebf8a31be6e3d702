#pragma once

#include "client/ui/dialer/diallist/cpop_cell.h"
#include "client/ui/dialer/diallist/db_link_list.h"

namespace kw::dialer {

// The POP rows, keyed by number and ISP name; a move hands popIndex on through a 16-bit integer.
class CpopDbLinkList : public DbLinkList<CpopCell> {};

}  // namespace kw::dialer
