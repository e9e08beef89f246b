// SPDX-License-Identifier: LGPL-2.1-or-later
#include "itemmapping.h"

#include "commonmapping.h"
#include "filemapping.h"
#include "markup.h"
#include "webaddress.h"

#include <TidelReader/htmltext.h>

namespace Tidel {

namespace {

using V = Vocabulary;

constexpr ElementName titles[] = {{V::Core, "title"}, {V::DublinCore, "title"}, {V::Media, "title"}};
constexpr ElementName texts[] = {{V::Content, "encoded"},
                                 {V::Core, "content"},
                                 {V::Xhtml, "body"},
                                 {V::Xhtml, "div"},
                                 {V::Core, "fulltext"},
                                 {V::Core, "description"},
                                 {V::Core, "summary"},
                                 {V::Media, "description"},
                                 {V::Itunes, "summary"},
                                 {V::DublinCore, "description"},
                                 {V::DublinCoreTerms, "abstract"},
                                 {V::Itunes, "subtitle"}};
constexpr ElementName publicationDates[] = {
    {V::Core, "pubdate"},
    {V::Core, "published"},
    {V::Core, "issued"},
    {V::DublinCore, "date"},
    {V::DublinCoreTerms, "issued"},
    {V::DublinCoreTerms, "available"},
    {V::DublinCoreTerms, "created"},
    {V::DublinCoreTerms, "date"},
    {V::Core, "created"},
};
constexpr ElementName updateDates[] = {{V::Core, "updated"},
                                       {V::Core, "modified"},
                                       {V::DublinCoreTerms, "modified"},
                                       {V::Core, "lastbuilddate"}};
constexpr ElementName identifiers[] = {{V::Core, "guid"}, {V::Core, "id"}};
constexpr ElementName categories[] = {
    {V::Core, "category"}, {V::DublinCore, "subject"}, {V::Media, "category"}};
// In characters. Some feeds list all words that a person may search for.
constexpr int maximumKeywords = 10000;
constexpr ElementName keywords[] = {{V::Itunes, "keywords"}, {V::Media, "keywords"}};

/// The elements \a names of \a item and of its media, in this order.
template <size_t Size>
std::vector<const Element *> allOf(const Element &item, const ElementName (&names)[Size])
{
    std::vector<const Element *> found;
    for (const ElementName &name : names) {
        if (const Element *element = item.find(name))
            found.push_back(element);
        if (name.vocabulary != V::Media)
            continue;
        for (const Element &child : item.children) {
            const Element *element = child.vocabulary == V::Media ? child.find(name) : nullptr;
            if (element)
                found.push_back(element);
        }
    }
    return found;
}

} // namespace

QString identifierOf(const Element &item)
{
    const Element *identifier = firstOf(item, identifiers);
    return identifier ? lineOf(identifier) : lineOf(item.value("about"));
}

namespace {

void setIdentity(ItemRecord &record, const Element &item)
{
    const Element *identifier = firstOf(item, identifiers);
    record.id = identifierOf(item);
    const bool isDenied =
        identifier && lineOf(identifier->value("ispermalink")).toLower() == QLatin1String("false");
    record.isPermalink = !isDenied && isWebAddress(record.id);
}

void setTexts(ItemRecord &record, const Element &item)
{
    record.base = item.base;
    for (const Element *element : allOf(item, texts)) {
        const QString text = htmlOf(element);
        if (record.text.isEmpty()) {
            record.text = text;
            record.base = element->base;
        } else if (!text.isEmpty() && text != record.text) {
            record.summary = text;
            break;
        }
    }
}

void setTitle(ItemRecord &record, const Element &item)
{
    for (const Element *element : allOf(item, titles)) {
        record.title = titleOf(element);
        if (!record.title.isEmpty())
            return;
    }
    record.title = firstWords(record.text);
}

void setDates(ItemRecord &record, const Element &item)
{
    record.updated = firstDateOf(item, updateDates);
    record.published = firstDateOf(item, publicationDates);
    if (!record.published.isValid())
        record.published = record.updated;
}

QString categoryIn(const Element &element)
{
    for (const char *attribute : {"label", "term"}) {
        const QString value = lineOf(element.value(attribute));
        if (!value.isEmpty())
            return value;
    }
    return titleOf(&element);
}

void setCategories(ItemRecord &record, const Element &item)
{
    for (const Element &child : item.children) {
        if (isOneOf(child, categories))
            addName(record.categories, categoryIn(child));
        if (!isOneOf(child, keywords))
            continue;
        const QStringList words = lineOf(&child).left(maximumKeywords).split(QLatin1Char(','));
        for (const QString &word : words)
            addName(record.categories, word.trimmed());
    }
}

Address commentsOf(const Element &item)
{
    if (const Element *comments = item.find({V::Core, "comments"}))
        return addressIn(*comments);
    const Element *replies = linkOf(item, "replies");
    return replies ? addressIn(*replies, "href") : Address();
}

QString languageOf(const Element &item)
{
    if (!item.language.isEmpty())
        return item.language;
    for (const ElementName &name :
         {ElementName{V::Core, "language"}, ElementName{V::DublinCore, "language"}}) {
        const QString language = lineOf(item.find(name));
        if (!language.isEmpty())
            return language;
    }
    const Element *text = item.find({V::Core, "content"});
    return text ? text->language : QString();
}

} // namespace

ItemRecord mapItem(const Element &item)
{
    ItemRecord record;
    setIdentity(record, item);
    record.link = websiteOf(item);
    setTexts(record, item);
    setTitle(record, item);
    setDates(record, item);
    setCategories(record, item);
    record.authors = authorsOf(item);
    const Element *source = item.find({V::Core, "source"});
    if (record.authors.isEmpty() && source)
        record.authors = authorsOf(*source);
    record.comments = commentsOf(item);
    record.language = languageOf(item);
    record.thumbnail = thumbnailOf(item);
    record.files = filesOf(item);
    return record;
}

} // namespace Tidel
