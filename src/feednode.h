// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDNODE_H
#define FEEDNODE_H

#include "tidelglobal.h"

/// Common base of the nodes of a feed tree: a channel holds messages, a message holds enclosures.
///
/// A parser that keeps its open elements as nodes can close one without knowing what it is:
/// \code
/// parent->addChild(child);
/// \endcode
///
/// Nodes are values, held and destroyed as what they are and never through this class; the protected
/// destructor makes the compiler say so.
class TIDEL_EXPORT FeedNode
{
public:
    /// Puts a copy of \a node in its place below this node. A null pointer or a node that does not belong
    /// below this one is ignored. \a node stays the caller's.
    virtual void addChild(FeedNode *node) = 0;

protected:
    FeedNode() = default;
    FeedNode(const FeedNode &) = default;
    FeedNode &operator=(const FeedNode &) = default;
    ~FeedNode() = default;
};

#endif
