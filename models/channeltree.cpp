// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channeltree_p.h"

#include "rowchanges_p.h"

#include <algorithm>

namespace Tidel {

namespace {

ChannelItem withoutChildren(ChannelItem item)
{
    item.children.clear();
    return item;
}

} // namespace

int ChannelNode::row() const
{
    const auto isThis = [this](const std::unique_ptr<ChannelNode> &child) { return child.get() == this; };
    const auto found = std::find_if(parent->children.begin(), parent->children.end(), isThis);
    return int(found - parent->children.begin());
}

QModelIndex ChannelTree::indexOf(const ChannelNode *node) const
{
    if (!node || !node->parent)
        return {};
    return m_model->createIndex(node->row(), 0, const_cast<ChannelNode *>(node));
}

void ChannelTree::become(const ChannelItem &root)
{
    m_names.clear();
    addNames(root);
    removeGone(&m_root, false);
    arrange(&m_root, root);
    // Their channels have moved out.
    removeGone(&m_root, true);
}

void ChannelTree::addNames(const ChannelItem &item)
{
    for (const ChannelItem &child : item.children) {
        m_names.insert(child.name());
        addNames(child);
    }
}

/// Removes the rows below \a parent that the new tree does not have, folders only if \a withFolders is true.
void ChannelTree::removeGone(ChannelNode *parent, bool withFolders)
{
    for (int row = int(parent->children.size()) - 1; row >= 0; --row) {
        ChannelNode *child = parent->children[size_t(row)].get();
        const bool isFolder = child->item.kind == ChannelModel::FolderKind;
        removeGone(child, withFolders);
        const QString name = child->item.name();
        if (m_names.contains(name) || (isFolder && !withFolders))
            continue;
        m_model->beginRemoveRows(indexOf(parent), row, row);
        m_nodes.remove(name);
        parent->children.erase(parent->children.begin() + row);
        m_model->endRemoveRows();
    }
}

/// Puts the rows of \a item below \a parent in their order. Rows that go elsewhere, or go away later, may
/// stand between them.
void ChannelTree::arrange(ChannelNode *parent, const ChannelItem &item)
{
    const std::vector<bool> stays = stayingChildren(parent, item);
    int row = 0;
    for (size_t i = 0; i < item.children.size(); ++i) {
        const ChannelItem &wanted = item.children[i];
        ChannelNode *child = m_nodes.value(wanted.name());
        if (!child)
            insert(parent, row, wanted);
        else if (!stays[i])
            row = move(child, parent, row);
        while (child && parent->children[size_t(row)].get() != child)
            ++row;
        show(parent->children[size_t(row)].get(), wanted);
        ++row;
    }
    // This takes rows of the parent away that go into its folders.
    for (const ChannelItem &child : item.children)
        arrange(m_nodes.value(child.name()), child);
}

/// For each row of \a item, whether it is below \a parent and need not move.
std::vector<bool> ChannelTree::stayingChildren(ChannelNode *parent, const ChannelItem &item) const
{
    QHash<QString, int> rows;
    for (const std::unique_ptr<ChannelNode> &child : parent->children)
        rows.insert(child->item.name(), int(rows.size()));
    QVector<int> current;
    for (const ChannelItem &child : item.children)
        current.append(rows.value(child.name(), -1));
    return longestAscent(current);
}

void ChannelTree::insert(ChannelNode *parent, int row, const ChannelItem &item)
{
    auto node = std::make_unique<ChannelNode>();
    node->item = withoutChildren(item);
    node->parent = parent;
    m_nodes.insert(item.name(), node.get());
    m_model->beginInsertRows(indexOf(parent), row, row);
    parent->children.insert(parent->children.begin() + row, std::move(node));
    m_model->endInsertRows();
}

/// Moves \a node before the row \a row of \a parent. Returns its row then.
int ChannelTree::move(ChannelNode *node, ChannelNode *parent, int row)
{
    ChannelNode *source = node->parent;
    const int from = node->row();
    const bool isSame = source == parent;
    if (isSame && (row == from || row == from + 1))
        return from;
    const int to = isSame && from < row ? row - 1 : row;
    m_model->beginMoveRows(indexOf(source), from, from, indexOf(parent), row);
    std::unique_ptr<ChannelNode> moved = std::move(source->children[size_t(from)]);
    source->children.erase(source->children.begin() + from);
    moved->parent = parent;
    parent->children.insert(parent->children.begin() + to, std::move(moved));
    m_model->endMoveRows();
    return to;
}

void ChannelTree::show(ChannelNode *node, const ChannelItem &item)
{
    if (node->item.looksLike(item))
        return;
    node->item = withoutChildren(item);
    const QModelIndex index = indexOf(node);
    Q_EMIT m_model->dataChanged(index, index);
}

} // namespace Tidel
