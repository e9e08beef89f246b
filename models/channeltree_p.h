// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELTREE_P_H
#define TIDEL_CHANNELTREE_P_H

#include "channelitem_p.h"

#include <QHash>
#include <QSet>

#include <memory>
#include <vector>

namespace Tidel {

/// A row of a ChannelModel.
struct ChannelNode
{
    ChannelItem item; ///< Without children.
    ChannelNode *parent = nullptr;
    std::vector<std::unique_ptr<ChannelNode>> children;

    /// The row of this node.
    int row() const;
};

/// The rows of a ChannelModel. The tree tells the model of each change.
class ChannelTree
{
public:
    explicit ChannelTree(ChannelModel *model) : m_model(model) { }

    const ChannelNode &root() const { return m_root; }
    /// The index of \a node; invalid if it is the root.
    QModelIndex indexOf(const ChannelNode *node) const;
    /// The node of the row that is called \a name; null if there is none.
    const ChannelNode *node(const QString &name) const { return m_nodes.value(name); }
    /// Makes the tree below \a root of this one. Rows that stay are moved, if need be.
    void become(const ChannelItem &root);

private:
    void addNames(const ChannelItem &item);
    void removeGone(ChannelNode *parent, bool withFolders);
    void arrange(ChannelNode *parent, const ChannelItem &item);
    std::vector<bool> stayingChildren(ChannelNode *parent, const ChannelItem &item) const;
    void insert(ChannelNode *parent, int row, const ChannelItem &item);
    int move(ChannelNode *node, ChannelNode *parent, int row);
    void show(ChannelNode *node, const ChannelItem &item);

    ChannelModel *const m_model;
    ChannelNode m_root;
    QHash<QString, ChannelNode *> m_nodes; // By the names of their items.
    QSet<QString> m_names; // Of the rows of the new tree.
};

} // namespace Tidel

#endif
