// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ELEMENTBUILDER_H
#define TIDEL_ELEMENTBUILDER_H

#include "element.h"
#include "xmlparser.h"

#include <functional>

namespace Tidel {

/// Builds the elements of a feed. Each item is handed out when it ends and not kept, so that the memory of a
/// large feed is that of its largest item.
class ElementBuilder : public XmlHandler
{
public:
    /// Creates a builder that calls \a takeItem for each item.
    explicit ElementBuilder(std::function<void(const Element &)> takeItem);

    /// The root element without its items.
    const Element &root() const { return m_root; }
    /// Why the document is too complex to be read; empty if it is not.
    const QString &obstacle() const { return m_obstacle; }

    bool startElement(const XmlTag &tag) override;
    bool endElement() override;
    bool text(std::string_view text, bool isLiteral) override;
    void documentIsCut() override { m_isCut = true; }

private:
    bool isWithinLimits();
    void add(Vocabulary vocabulary, const XmlTag &tag);
    Vocabulary vocabularyOfTag(const XmlTag &tag) const;
    void startMarkup(const XmlTag &tag);
    void endMarkup();
    void endItem();
    /// The number of bytes that the text of the current element may still grow by.
    size_t room() const;

    const std::function<void(const Element &)> m_takeItem;
    Element m_root;
    std::vector<Element *> m_path; ///< The open elements that are kept.
    std::vector<std::string>
        m_markup; ///< The names of the open elements in the text of the last one of them.
    int m_ignored = 0; ///< The number of open elements that are not kept.
    std::string m_rootPrefix;
    int m_elements = 0;
    int m_items = 0;
    size_t m_kept = 0; ///< The number of elements and attributes in memory.
    size_t m_keptBeforeItem = 0;
    bool m_isCut = false;
    QString m_obstacle;
};

} // namespace Tidel

#endif
