// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STREAMSAMPLES_H
#define STREAMSAMPLES_H

#include <feedchannel.h>

#include <QDataStream>
#include <QVariantList>
#include <QtTest>

/// Returns all fields of a value and of its elements in the order of its stream.
inline QVariantList valuesOf(const FeedEnclosure &e)
{
    return {e.uri(),     e.remoteUrl(), e.localUrl(), e.length(),   int(e.type()),
            e.groupId(), e.isDefault(), e.mimeType(), e.typeIcon(), e.sourceNamespace()};
}

/// Returns a time as text with its zone, because equal times may have different zones.
inline QString textOf(const QDateTime &time)
{
    return time.toString(Qt::ISODateWithMs) + ' ' + QString::number(time.timeSpec());
}

template <typename T> QVariantList valuesOf(const QList<T> &list)
{
    QVariantList values;
    for (const T &element : list)
        values << QVariant(valuesOf(element));
    return values;
}

inline QVariantList valuesOf(const FeedMessage &m)
{
    return {m.title(),
            m.link(),
            m.description(),
            m.summary(),
            m.baseUrl(),
            textOf(m.publishedDate()),
            textOf(m.downloadedTime()),
            m.isFavorite(),
            m.id(),
            valuesOf(m.enclosures())};
}

inline QVariantList valuesOf(const FeedChannel &c)
{
    return {c.type(),
            c.title(),
            c.uri(),
            c.link(),
            valuesOf(c.icon()),
            c.description(),
            textOf(c.subscribedTime()),
            textOf(c.updatedTime()),
            c.lastModifiedTime(),
            valuesOf(c.messages())};
}

/// In the samples, all texts are different, and so are all numbers of one sample. Times are UTC or local,
/// because the stream of Qt 4.8 has no other zones.
inline FeedEnclosure sampleEnclosure(const QString &name)
{
    FeedEnclosure enclosure("urn:" + name, "https://media.example.org/" + name + "?a=b&c",
                            "file:///home/" + name, "http://example.org/ns/" + name, 4026531841u,
                            FeedEnclosure::Essential, 22, true);
    enclosure.setMimeType("audio/" + name);
    enclosure.setTypeIcon("icon-" + name);
    return enclosure;
}

inline FeedMessage sampleMessage(const QString &name, const QList<FeedEnclosure> &enclosures)
{
    FeedMessage message("Title of " + name, "https://example.org/" + name, "tag:" + name,
                        "<p>D\u00e9scription of " + name + " \U0001f4fb</p>", "Summary of " + name,
                        QDateTime(QDate(2026, 11, 17), QTime(18, 0, 1, 234), Qt::UTC), enclosures,
                        QDateTime(QDate(2026, 11, 18), QTime(7, 30)), true);
    message.setBaseUrl(QUrl("https://example.org/base/" + name + "?q=%20\u00e4#f"));
    return message;
}

/// Returns a channel with an icon and two messages, the older one first.
inline FeedChannel sampleChannel()
{
    FeedMessage second;
    second.setLink("https://example.org/bare");
    FeedEnclosure unknownType;
    unknownType.setType(FeedEnclosure::Type(7));
    second.addEnclosure(unknownType);
    const QList<FeedMessage> messages{
        sampleMessage("one", {sampleEnclosure("one.ogg"), sampleEnclosure("two.pdf")}), second};
    return FeedChannel(
        "urn:channel", "https://example.org/feed.xml", "The Channel", sampleEnclosure("icon.png"), "rss",
        "About the channel", QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC),
        QDateTime(QDate(2026, 6, 7), QTime(8, 9, 10), Qt::UTC), "Sat, 21 Nov 2026 10:00:00 GMT", messages);
}

/// The version and byte order that a stream is set to.
struct StreamForm
{
    int version = QDataStream::Qt_DefaultCompiledVersion;
    QDataStream::ByteOrder byteOrder = QDataStream::BigEndian;

    void applyTo(QDataStream &stream) const
    {
        stream.setVersion(version);
        stream.setByteOrder(byteOrder);
    }
};
Q_DECLARE_METATYPE(StreamForm)

/// Adds a row for each version and byte order, with names such as "Qt_4_8-BigEndian".
inline void addStreamForms()
{
    QTest::addColumn<StreamForm>("form");
    constexpr int Qt_6_0 = 20;
    const std::pair<const char *, int> versions[] = {
        {"Qt_4_8", QDataStream::Qt_4_8}, {"Qt_5_15", QDataStream::Qt_5_15}, {"Qt_6_0", Qt_6_0}};
    for (const auto &[name, version] : versions) {
        if (version > QDataStream::Qt_DefaultCompiledVersion)
            continue;
        QTest::addRow("%s-BigEndian", name) << StreamForm{version, QDataStream::BigEndian};
        QTest::addRow("%s-LittleEndian", name) << StreamForm{version, QDataStream::LittleEndian};
    }
}

/// Returns the bytes of \a value in the form \a form.
template <typename T> QByteArray written(const T &value, const StreamForm &form = {})
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    form.applyTo(stream);
    QDataStream &result = stream << value;
    return &result == &stream ? bytes : "another stream";
}

/// Reads \a value from \a bytes and returns the status of the stream. Sets \a consumed to the number of bytes
/// that were read.
template <typename T>
QDataStream::Status readFrom(const QByteArray &bytes, T &value, const StreamForm &form = {},
                             qint64 *consumed = nullptr)
{
    QDataStream stream(bytes);
    form.applyTo(stream);
    QDataStream &result = stream >> value;
    if (consumed)
        *consumed = stream.device()->pos();
    return &result == &stream ? stream.status() : QDataStream::WriteFailed;
}

#endif
