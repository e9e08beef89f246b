// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HTMLTREE_P_H
#define TIDEL_HTMLTREE_P_H

#include <QByteArray>

#include <gumbo.h>

namespace Tidel {

/// The tree of an HTML text in UTF-8, which must outlive it. The text must not nest elements without limit,
/// see nextTag() and wellNested().
class HtmlTree
{
public:
    explicit HtmlTree(const QByteArray &html)
    {
        m_options.max_errors = 0;
        m_output = gumbo_parse_with_options(&m_options, html.constData(), size_t(html.size()));
    }
    ~HtmlTree() { gumbo_destroy_output(&m_options, m_output); }

    /// Calls \a use with each node of the head.
    template <typename Use> void forEachInHead(Use use) const
    {
        forEachChild(*childAt(*m_output->root, 0), use);
    }
    /// Calls \a use with each node of the body.
    template <typename Use> void forEachInBody(Use use) const
    {
        // White space and comments may follow it.
        forEachChild(*m_output->root, [&use](const GumboNode &child) {
            if (child.type == GUMBO_NODE_ELEMENT && child.v.element.tag == GUMBO_TAG_BODY)
                forEachChild(child, use);
        });
    }

private:
    Q_DISABLE_COPY(HtmlTree)

    static const GumboNode *childAt(const GumboNode &parent, unsigned index)
    {
        return static_cast<const GumboNode *>(parent.v.element.children.data[index]);
    }
    template <typename Use> static void forEachChild(const GumboNode &parent, Use use)
    {
        for (unsigned i = 0; i < parent.v.element.children.length; ++i)
            use(*childAt(parent, i));
    }

    GumboOptions m_options = kGumboDefaultOptions;
    GumboOutput *m_output;
};

} // namespace Tidel

#endif
