// SPDX-License-Identifier: LGPL-2.1-or-later
#include "element.h"

#include <TidelReader/cleantext.h>

#include <algorithm>

namespace Tidel {

std::string_view Element::value(std::string_view attribute) const
{
    for (const Attribute &candidate : attributes) {
        if (candidate.name == attribute)
            return candidate.value;
    }
    return {};
}

const Element *Element::find(const ElementName &child) const
{
    for (const Element &candidate : children) {
        if (candidate.is(child)
            && !(candidate.text.empty() && candidate.attributes.empty() && candidate.children.empty()))
            return &candidate;
    }
    return nullptr;
}

QString lineOf(const Element *element) { return element ? lineOf(element->text) : QString(); }

QString lineOf(std::string_view value)
{
    return cleanText(QString::fromUtf8(value.data(), int(value.size()))).simplified();
}

// A line break within an address comes from a wrapped line; Link takes it out.
Address addressIn(const Element &element)
{
    return {QString::fromUtf8(element.text.data(), int(element.text.size())).trimmed(), element.base};
}

Address addressIn(const Element &element, std::string_view attribute)
{
    const std::string_view value = element.value(attribute);
    return {QString::fromUtf8(value.data(), int(value.size())), element.base};
}

quint64 numberIn(std::string_view text)
{
    QString digits = lineOf(text);
    digits.remove(QLatin1Char(','));
    return digits.toULongLong();
}

} // namespace Tidel
