// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDNODE_H
#define FEEDNODE_H

#include "tidelglobal.h"

/// The common base of the nodes of a feed tree: a channel holds messages, a message holds enclosures.
///
/// A parser that keeps its open elements as nodes can add each one to its parent without knowing its type:
/// \code
/// parent->addChild(child);
/// \endcode
///
/// Nodes are values. Create, copy and destroy a node as its own type; the protected destructor makes the
/// compiler reject the deletion of a FeedNode.
class TIDEL_EXPORT FeedNode
{
public:
    /// Adds a copy of \a node below this node. Ignores a null pointer and a node of a type that does not
    /// belong below this node. The caller keeps the ownership of \a node.
    virtual void addChild(FeedNode *node) = 0;

protected:
    /// Creates a node.
    FeedNode() = default;
    /// Creates a copy.
    FeedNode(const FeedNode &) = default;
    /// Assigns a copy.
    FeedNode &operator=(const FeedNode &) = default;
    /// Destroys the node.
    // contract: not virtual. addChild() is the only virtual function that other builds expect.
    ~FeedNode() = default;
};

#endif
