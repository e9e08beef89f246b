// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HTMLTABLES_P_H
#define TIDEL_HTMLTABLES_P_H

#include <gumbo.h>

namespace Tidel {

/// Returns true if \a table has columns to compare: more than one, but not more than a screen can show, and
/// no other table in it. Otherwise returns false; then it lays out a page.
bool isDataTable(const GumboNode &table);

} // namespace Tidel

#endif
