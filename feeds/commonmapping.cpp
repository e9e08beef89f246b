// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commonmapping.h"

#include "feeddate.h"
#include "feedlimits.h"

namespace Tidel {

namespace {

using V = Vocabulary;

constexpr ElementName authors[] = {
    {V::Core, "author"}, {V::DublinCore, "creator"}, {V::DublinCore, "author"}};

std::string_view relationOf(const Element &link)
{
    constexpr std::string_view registry = "http://www.iana.org/assignments/relation/";
    const std::string_view relation = link.value("rel");
    if (relation.substr(0, registry.size()) == registry)
        return relation.substr(registry.size());
    return relation.empty() ? "alternate" : relation;
}

bool isLink(const Element &element, std::string_view relation)
{
    return element.is({V::Core, "link"}) && !element.value("href").empty() && relationOf(element) == relation;
}

/// Mail puts the name after the address, "ann@example.org (Ann)", or before it, "Ann <ann@example.org>".
QString nameIn(const QString &author)
{
    const int open = author.indexOf(QLatin1Char('('));
    const int close = author.indexOf(QLatin1Char(')'), open);
    const bool isMail = author.contains(QLatin1Char('@'));
    if (isMail && open >= 0 && close > open + 1)
        return author.mid(open + 1, close - open - 1).trimmed();
    const int address = author.indexOf(QLatin1Char('<'));
    return isMail && address > 0 ? author.left(address).trimmed() : author;
}

QString authorIn(const Element &author)
{
    for (const char *part : {"name", "email", "url", "uri"}) {
        const QString text = lineOf(author.find({V::Core, part}));
        if (!text.isEmpty())
            return text;
    }
    return nameIn(lineOf(&author));
}

} // namespace

QDateTime dateIn(const Element *element) { return element ? parseFeedDate(lineOf(element)) : QDateTime(); }

const Element *linkOf(const Element &parent, std::string_view relation)
{
    const Element *other = nullptr;
    for (const Element &child : parent.children) {
        if (!isLink(child, relation))
            continue;
        const std::string_view type = child.value("type");
        if (type.empty() || type == "text/html" || type == "application/xhtml+xml")
            return &child;
        if (!other)
            other = &child;
    }
    return other;
}

Address websiteOf(const Element &parent)
{
    for (const Element &child : parent.children) {
        if (child.is({V::Core, "link"}) && child.value("href").empty() && !lineOf(&child).isEmpty())
            return addressIn(child);
    }
    const Element *link = linkOf(parent, "alternate");
    return link ? addressIn(*link, "href") : Address();
}

void addName(QStringList &names, const QString &name)
{
    if (!name.isEmpty() && names.size() < maximumNames && !names.contains(name))
        names.append(name);
}

QStringList authorsOf(const Element &parent)
{
    QStringList names;
    for (const Element &child : parent.children) {
        if (isOneOf(child, authors))
            addName(names, authorIn(child));
    }
    const QString podcaster = lineOf(parent.find({V::Itunes, "author"}));
    return names.isEmpty() && !podcaster.isEmpty() ? QStringList(podcaster) : names;
}

} // namespace Tidel
