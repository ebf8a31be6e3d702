#pragma once

#include "client/ui/dialer/diallist/cisp_cell.h"
#include "client/ui/dialer/diallist/db_link_list.h"

namespace kw::dialer {

// The ISP rows, keyed by name; a move exchanges posIndex as text.
class CispDbLinkList : public DbLinkList<CispCell> {};

}  // namespace kw::dialer
