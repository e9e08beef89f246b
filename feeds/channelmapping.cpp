// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelmapping.h"

#include "commonmapping.h"
#include "markup.h"

namespace Tidel {

namespace {

using V = Vocabulary;

constexpr ElementName titles[] = {{V::Core, "title"}, {V::DublinCore, "title"}, {V::Media, "title"}};
constexpr ElementName descriptions[] = {{V::Core, "description"},       {V::Core, "subtitle"},
                                        {V::Core, "tagline"},           {V::Itunes, "summary"},
                                        {V::DublinCore, "description"}, {V::Itunes, "subtitle"}};
constexpr ElementName languages[] = {{V::Core, "language"}, {V::DublinCore, "language"}};
constexpr ElementName rights[] = {
    {V::Core, "copyright"}, {V::Core, "rights"}, {V::DublinCore, "rights"}, {V::Media, "copyright"}};
constexpr ElementName pictures[] = {{V::Core, "logo"}, {V::Core, "icon"}};

/// One element with what the root element and the channel in it say: RSS has the one in the other, RDF beside
/// the other, and Atom has no channel.
Element joined(const Element &root)
{
    Element channel = root;
    for (const Element &child : root.children) {
        if (!child.is({V::Core, "channel"}))
            continue;
        channel.children.insert(channel.children.begin(), child.children.begin(), child.children.end());
        if (channel.language.isEmpty())
            channel.language = child.language;
        break;
    }
    return channel;
}

Address imageOf(const Element &channel)
{
    if (const Element *cover = channel.find({V::Itunes, "image"}))
        return addressIn(*cover, "href");
    const Element *image = channel.find({V::Core, "image"});
    if (const Element *url = image ? image->find({V::Core, "url"}) : nullptr)
        return addressIn(*url);
    if (const Element *picture = firstOf(channel, pictures))
        return addressIn(*picture);
    return image ? addressIn(*image, "resource") : Address();
}

/// The image that is for lists of feeds.
Address iconOf(const Element &channel)
{
    if (const Element *icon = channel.find({V::Core, "icon"}))
        return addressIn(*icon);
    const Element *image = channel.find({V::Core, "image"});
    const Element *url = image ? image->find({V::Core, "url"}) : nullptr;
    return url ? addressIn(*url) : Address();
}

/// The values of the children \a child of the element \a list of \a channel.
QStringList valuesIn(const Element &channel, const char *list, const char *child)
{
    QStringList values;
    const Element *parent = channel.find({V::Core, list});
    if (!parent)
        return values;
    for (const Element &value : parent->children) {
        const QString text = lineOf(&value);
        if (value.is({V::Core, child}) && !text.isEmpty() && !values.contains(text))
            values.append(text);
    }
    return values;
}

QVector<int> hoursIn(const QStringList &texts)
{
    QVector<int> hours;
    for (const QString &text : texts) {
        bool isNumber = false;
        const int hour = text.toInt(&isNumber);
        const int hourOfDay = hour == 24 ? 0 : hour; // Some feeds call midnight 24.
        if (isNumber && hour >= 0 && hour <= 24 && !hours.contains(hourOfDay))
            hours.append(hourOfDay);
    }
    return hours;
}

QStringList daysIn(const QStringList &texts)
{
    static const QStringList names{QStringLiteral("Monday"),    QStringLiteral("Tuesday"),
                                   QStringLiteral("Wednesday"), QStringLiteral("Thursday"),
                                   QStringLiteral("Friday"),    QStringLiteral("Saturday"),
                                   QStringLiteral("Sunday")};
    QStringList days;
    for (const QString &name : names) {
        if (texts.contains(name, Qt::CaseInsensitive))
            days.append(name);
    }
    return days;
}

void setTimes(FeedRecord &feed, const Element &channel)
{
    constexpr quint64 minutesOfYear = Q_UINT64_C(366) * 24 * 60;
    const Element *ttl = channel.find({V::Core, "ttl"});
    feed.minutesToLive = ttl ? int(std::min(numberIn(ttl->text), minutesOfYear)) : 0;
    feed.skipHours = hoursIn(valuesIn(channel, "skiphours", "hour"));
    feed.skipDays = daysIn(valuesIn(channel, "skipdays", "day"));
    static const QStringList periods{QStringLiteral("hourly"), QStringLiteral("daily"),
                                     QStringLiteral("weekly"), QStringLiteral("monthly"),
                                     QStringLiteral("yearly")};
    const QString period = lineOf(channel.find({V::Syndication, "updateperiod"})).toLower();
    feed.updatePeriod = periods.contains(period) ? period : QString();
    const Element *frequency = channel.find({V::Syndication, "updatefrequency"});
    feed.updateFrequency = frequency ? int(std::min<quint64>(numberIn(frequency->text), 1000)) : 0;
    feed.updateBase = dateIn(channel.find({V::Syndication, "updatebase"}));
}

Address hrefOf(const Element *link) { return link ? addressIn(*link, "href") : Address(); }

} // namespace

void mapChannel(const Element &root, FeedRecord &feed)
{
    const Element channel = joined(root);
    feed.title = titleOf(firstOf(channel, titles));
    feed.description = htmlOf(firstOf(channel, descriptions));
    feed.website = websiteOf(channel);
    feed.image = imageOf(channel);
    feed.icon = iconOf(channel);
    const Element *language = firstOf(channel, languages);
    feed.language = language ? lineOf(language) : channel.language;
    feed.copyright = titleOf(firstOf(channel, rights));
    feed.hub = hrefOf(linkOf(channel, "hub"));
    feed.self = hrefOf(linkOf(channel, "self"));
    setTimes(feed, channel);

    // In RSS, the author of the feed is the one who publishes it.
    const QStringList authors = feed.format == QLatin1String("atom") ? authorsOf(channel) : QStringList();
    for (ItemRecord &item : feed.items) {
        if (item.authors.isEmpty())
            item.authors = authors;
    }
}

} // namespace Tidel
