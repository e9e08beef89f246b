// SPDX-License-Identifier: LGPL-2.1-or-later
#include "detailfields_p.h"

#include "detaillimits_p.h"
#include "statements_p.h"

#include <algorithm>
#include <variant>

namespace Tidel {

namespace {

/// A field and the property that it is stored as. A list is stored as one value for each element.
template <typename Details> struct Field
{
    const char *name;
    std::variant<QString Details::*, QStringList Details::*, Link Details::*, QUrl Details::*,
                 QDateTime Details::*, int Details::*, QList<int> Details::*, std::optional<bool> Details::*>
        member;
};

template <typename Details> const QVector<Field<Details>> &fields();

template <> const QVector<Field<MessageDetails>> &fields()
{
    static const QVector<Field<MessageDetails>> table = {
        {"author", &MessageDetails::authors},          {"category", &MessageDetails::categories},
        {"updatedDate", &MessageDetails::updatedDate}, {"comments", &MessageDetails::comments},
        {"language", &MessageDetails::language},       {"thumbnail", &MessageDetails::thumbnail},
        {"baseUrl", &MessageDetails::baseUrl},
    };
    return table;
}

template <> const QVector<Field<EnclosureDetails>> &fields()
{
    static const QVector<Field<EnclosureDetails>> table = {
        {"duration", &EnclosureDetails::duration}, {"title", &EnclosureDetails::title},
        {"season", &EnclosureDetails::season},     {"episode", &EnclosureDetails::episode},
        {"chapters", &EnclosureDetails::chapters}, {"isExplicit", &EnclosureDetails::isExplicit},
    };
    return table;
}

template <> const QVector<Field<ChannelDetails>> &fields()
{
    static const QVector<Field<ChannelDetails>> table = {
        {"website", &ChannelDetails::website},
        {"description", &ChannelDetails::description},
        {"language", &ChannelDetails::language},
        {"copyright", &ChannelDetails::copyright},
        {"image", &ChannelDetails::image},
        {"minutesToLive", &ChannelDetails::minutesToLive},
        {"skipHour", &ChannelDetails::skipHours},
        {"skipDay", &ChannelDetails::skipDays},
        {"updatePeriod", &ChannelDetails::updatePeriod},
        {"updateFrequency", &ChannelDetails::updateFrequency},
        {"updateBase", &ChannelDetails::updateBase},
        {"hub", &ChannelDetails::hub},
        {"self", &ChannelDetails::self},
        {"note", &ChannelDetails::notes},
    };
    return table;
}

template <> const QVector<Field<FeedNotes>> &fields()
{
    static const QVector<Field<FeedNotes>> table = {
        {"notBefore", &FeedNotes::notBefore}, {"retryAfter", &FeedNotes::retryAfter},
        {"heldHost", &FeedNotes::heldHost},   {"error", &FeedNotes::error},
        {"failures", &FeedNotes::failures},   {"status", &FeedNotes::status},
        {"movedTo", &FeedNotes::movedTo},     {"timesMoved", &FeedNotes::timesMoved},
    };
    return table;
}

/// The beginning of \a text, which does not end within a character.
QString limited(const QString &text)
{
    const bool isCut =
        text.size() > maximumDetailLength && text.at(maximumDetailLength - 1).isHighSurrogate();
    return text.left(isCut ? maximumDetailLength - 1 : maximumDetailLength);
}

QVariantList valuesOf(const QString &text)
{
    return text.isEmpty() ? QVariantList() : QVariantList{limited(text)};
}

QVariantList valuesOf(const QStringList &texts)
{
    QVariantList values;
    for (const QString &text : texts.mid(0, maximumDetailValues)) {
        if (!text.isEmpty() && !values.contains(limited(text)))
            values.append(limited(text));
    }
    return values;
}

QVariantList valuesOf(const Link &link)
{
    return link.isNull() ? QVariantList() : QVariantList{link.toString()};
}

QVariantList valuesOf(const QUrl &url)
{
    const QString text = Link::encoded(url);
    return text.size() > maximumDetailLength ? QVariantList() : valuesOf(text);
}

// The store keeps whole seconds.
QVariantList valuesOf(const QDateTime &time)
{
    return time.isValid() ? QVariantList{QDateTime::fromSecsSinceEpoch(time.toSecsSinceEpoch(), Qt::UTC)}
                          : QVariantList();
}

QVariantList valuesOf(int number) { return number == 0 ? QVariantList() : QVariantList{number}; }

QVariantList valuesOf(const QList<int> &numbers)
{
    QVariantList values;
    for (const int number : numbers.mid(0, maximumDetailValues)) {
        if (!values.contains(number))
            values.append(number);
    }
    return values;
}

QVariantList valuesOf(const std::optional<bool> &fact) { return fact ? QVariantList{*fact} : QVariantList(); }

void add(QString &text, const QVariant &value) { text = value.toString(); }

void add(QStringList &texts, const QVariant &value)
{
    texts.append(value.toString());
    texts.sort();
}

void add(Link &link, const QVariant &value) { link = Link::fromEncoded(value.toString()); }

void add(QUrl &url, const QVariant &value) { url = QUrl(value.toString()); }

void add(QDateTime &time, const QVariant &value) { time = value.toDateTime(); }

void add(int &number, const QVariant &value) { number = value.toInt(); }

void add(QList<int> &numbers, const QVariant &value)
{
    numbers.append(value.toInt());
    std::sort(numbers.begin(), numbers.end());
}

void add(std::optional<bool> &fact, const QVariant &value) { fact = value.toBool(); }

} // namespace

template <typename Details> QStringList detailNames()
{
    QStringList names;
    for (const Field<Details> &field : fields<Details>())
        names.append(QString::fromLatin1(field.name));
    return names;
}

template <typename Details> QVector<DetailValue> detailValues(const Details &details)
{
    QVector<DetailValue> values;
    for (const Field<Details> &field : fields<Details>()) {
        const QVariantList some =
            std::visit([&](auto member) { return valuesOf(details.*member); }, field.member);
        for (const QVariant &value : some)
            values.append({QString::fromLatin1(field.name), value});
    }
    return values;
}

template <typename Details> bool addDetail(Details &details, const QString &name, const QVariant &value)
{
    for (const Field<Details> &field : fields<Details>()) {
        if (name == QLatin1String(field.name)) {
            std::visit([&](auto member) { add(details.*member, value); }, field.member);
            return true;
        }
    }
    return false;
}

template <typename Details>
Result<QHash<QString, Details>> readDetails(StorePrivate &store, const QStringList &uris, const char *attempt)
{
    QHash<QString, Details> details;
    const Result<void> read = inChunks(uris, [&](const QStringList &some) {
        return store.run(Statements::details(some, detailNames<Details>()), attempt)
            .map([&](const Answer &answer) {
                while (answer->next())
                    addDetail(details[answer->value(0).toString()],
                              Statements::detailName(answer->value(1).toString()), answer->value(2));
            });
    });
    return read.map([&] { return details; });
}

template QStringList detailNames<MessageDetails>();
template QVector<DetailValue> detailValues(const MessageDetails &);
template bool addDetail(MessageDetails &, const QString &, const QVariant &);
template Result<QHash<QString, MessageDetails>> readDetails(StorePrivate &, const QStringList &,
                                                            const char *);

template QStringList detailNames<EnclosureDetails>();
template QVector<DetailValue> detailValues(const EnclosureDetails &);
template bool addDetail(EnclosureDetails &, const QString &, const QVariant &);
template Result<QHash<QString, EnclosureDetails>> readDetails(StorePrivate &, const QStringList &,
                                                              const char *);

template QStringList detailNames<ChannelDetails>();
template QVector<DetailValue> detailValues(const ChannelDetails &);
template bool addDetail(ChannelDetails &, const QString &, const QVariant &);
template Result<QHash<QString, ChannelDetails>> readDetails(StorePrivate &, const QStringList &,
                                                            const char *);

template QStringList detailNames<FeedNotes>();
template QVector<DetailValue> detailValues(const FeedNotes &);
template bool addDetail(FeedNotes &, const QString &, const QVariant &);

} // namespace Tidel
