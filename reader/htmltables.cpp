// SPDX-License-Identifier: LGPL-2.1-or-later
#include "htmltables_p.h"

#include "htmlnode_p.h"

#include <algorithm>

namespace Tidel {

namespace {

constexpr int maximumColumns = 30;

struct TableShape
{
    bool holdsTable = false;
    int columns = 0; // of the longest row

    void look(const GumboNode &node)
    {
        int cells = 0;
        forEachChild(node, [&](const GumboNode &child) {
            if (holdsTable || child.type != GUMBO_NODE_ELEMENT)
                return;
            const GumboTag tag = child.v.element.tag;
            holdsTable = tag == GUMBO_TAG_TABLE;
            if (tag == GUMBO_TAG_TD || tag == GUMBO_TAG_TH)
                cells += std::clamp(attribute(child, "colspan").toInt(), 1, maximumColumns + 1);
            look(child);
        });
        columns = std::max(columns, cells);
    }
};

} // namespace

bool isDataTable(const GumboNode &table)
{
    TableShape shape;
    shape.look(table);
    return !shape.holdsTable && shape.columns > 1 && shape.columns <= maximumColumns;
}

} // namespace Tidel
