// SPDX-License-Identifier: LGPL-2.1-or-later
#include "jsonfeed.h"

#include "feeddate.h"
#include "feedlimits.h"
#include "itemlist.h"
#include "markup.h"
#include "webaddress.h"

#include <TidelReader/cleantext.h>
#include <TidelReader/htmltext.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace Tidel {

namespace {

/// A member of an object and the field of a record that it goes to.
template <typename Record, typename Value> struct Field
{
    const char *name;
    Value Record::*target;
};

const Field<FeedRecord, Address> feedAddresses[] = {{"home_page_url", &FeedRecord::website},
                                                    {"feed_url", &FeedRecord::self},
                                                    {"icon", &FeedRecord::image},
                                                    {"favicon", &FeedRecord::image},
                                                    {"favicon", &FeedRecord::icon}};
const Field<ItemRecord, Address> itemAddresses[] = {{"url", &ItemRecord::link},
                                                    {"external_url", &ItemRecord::link},
                                                    {"image", &ItemRecord::thumbnail},
                                                    {"banner_image", &ItemRecord::thumbnail}};
const Field<ItemRecord, QDateTime> itemDates[] = {{"date_published", &ItemRecord::published},
                                                  {"date_modified", &ItemRecord::updated}};

QJsonValue valueOf(const QJsonObject &object, const char *name) { return object.value(QLatin1String(name)); }

QString textOf(const QJsonObject &object, const char *name)
{
    return cleanText(valueOf(object, name).toString().left(maximumSourceSize)).trimmed();
}

QString lineOf(const QJsonObject &object, const char *name) { return textOf(object, name).simplified(); }

/// The plain text \a name of \a object as HTML.
QString escapedTextOf(const QJsonObject &object, const char *name)
{
    return htmlOfPlainText(textOf(object, name).replace(QLatin1String("\r\n"), QLatin1String("\n")));
}

/// The number \a name of \a object; 0 if it is none, negative or above \a maximum.
quint64 numberOf(const QJsonObject &object, const char *name, double maximum)
{
    const double number = valueOf(object, name).toDouble();
    return number > 0 && number <= maximum ? quint64(number) : 0;
}

/// Fills the addresses of \a record. Of two members for one field the first that says something counts.
template <typename Record, size_t Size>
void readAddresses(const QJsonObject &object, const Field<Record, Address> (&fields)[Size], Record &record)
{
    for (const auto &field : fields) {
        Address &address = record.*field.target;
        if (address.text.isEmpty())
            address.text = textOf(object, field.name);
    }
}

/// The authors of \a object, a feed or an item: a list since version 1.1, one author before.
QStringList authorsOf(const QJsonObject &object)
{
    QJsonArray authors = valueOf(object, "authors").toArray();
    if (authors.isEmpty())
        authors.append(valueOf(object, "author"));
    QStringList names;
    for (const QJsonValue &value : qAsConst(authors)) {
        const QString name = lineOf(value.toObject(), "name");
        names.append(name.isEmpty() ? lineOf(value.toObject(), "url") : name);
    }
    names.removeAll(QString());
    return names.mid(0, maximumNames);
}

QStringList tagsOf(const QJsonObject &item)
{
    const QJsonArray tags = valueOf(item, "tags").toArray();
    QStringList names;
    for (const QJsonValue &tag : tags)
        names.append(cleanText(tag.toString()).simplified());
    names.removeAll(QString());
    return names.mid(0, maximumNames);
}

/// The identifier of \a item, which feeds also write as a number.
QString idOf(const QJsonObject &item)
{
    const QJsonValue id = valueOf(item, "id");
    const int allDigits = 17;
    return id.isDouble() ? QString::number(id.toDouble(), 'g', allDigits) : textOf(item, "id");
}

FileRecord fileOf(const QJsonObject &attachment)
{
    const double largestExactNumber = Q_INT64_C(1) << 53;
    const double longestDuration = 1000 * 3600;
    FileRecord file;
    file.address.text = textOf(attachment, "url");
    file.mimeType = lineOf(attachment, "mime_type");
    file.bytes = numberOf(attachment, "size_in_bytes", largestExactNumber);
    file.seconds = int(numberOf(attachment, "duration_in_seconds", longestDuration));
    file.title = lineOf(attachment, "title");
    return file;
}

QVector<FileRecord> filesOf(const QJsonObject &item)
{
    const QJsonArray attachments = valueOf(item, "attachments").toArray();
    QVector<FileRecord> files;
    for (const QJsonValue &attachment : attachments) {
        // One too many shows that some were left out.
        if (files.size() > maximumFiles)
            break;
        const FileRecord file = fileOf(attachment.toObject());
        if (!file.address.text.isEmpty())
            files.append(file);
    }
    return files;
}

/// Fills the texts of \a record. The summary is the text if there is no other.
void readTexts(const QJsonObject &item, ItemRecord &record)
{
    record.text = textOf(item, "content_html");
    if (record.text.isEmpty())
        record.text = escapedTextOf(item, "content_text");
    record.summary = escapedTextOf(item, "summary");
    if (record.text.isEmpty())
        record.text.swap(record.summary);
    record.title = lineOf(item, "title");
    if (record.title.isEmpty())
        record.title = firstWords(record.text);
}

ItemRecord itemOf(const QJsonObject &item, const QStringList &authorsOfFeed)
{
    ItemRecord record;
    record.id = idOf(item);
    record.isPermalink = isWebAddress(record.id);
    readTexts(item, record);
    readAddresses(item, itemAddresses, record);
    for (const auto &field : itemDates)
        record.*field.target = parseFeedDate(lineOf(item, field.name));
    record.authors = authorsOf(item);
    if (record.authors.isEmpty())
        record.authors = authorsOfFeed;
    record.categories = tagsOf(item);
    record.language = lineOf(item, "language");
    record.files = filesOf(item);
    return record;
}

/// The WebSub hub of \a feed; the first hub if none is called so.
Address hubOf(const QJsonObject &feed)
{
    const QJsonArray hubs = valueOf(feed, "hubs").toArray();
    const auto isWebSub = [](const QJsonValue &hub) {
        return lineOf(hub.toObject(), "type").compare(QLatin1String("websub"), Qt::CaseInsensitive) == 0;
    };
    const auto found = std::find_if(hubs.begin(), hubs.end(), isWebSub);
    const QJsonValue hub = found == hubs.end() ? hubs.first() : QJsonValue(*found);
    return {textOf(hub.toObject(), "url"), QString()};
}

FeedRecord feedOf(const QJsonObject &feed)
{
    FeedRecord record;
    record.format = QStringLiteral("json");
    record.title = lineOf(feed, "title");
    record.description = escapedTextOf(feed, "description");
    record.language = lineOf(feed, "language");
    record.hub = hubOf(feed);
    readAddresses(feed, feedAddresses, record);

    const QStringList authors = authorsOf(feed);
    const QJsonArray items = valueOf(feed, "items").toArray();
    ItemList list;
    for (const QJsonValue &item : items) {
        if (item.isObject())
            list.add(itemOf(item.toObject(), authors));
    }
    list.moveTo(record);
    return record;
}

// A value of two bytes takes a hundred times as much when it is parsed.
bool hasManyValues(const QByteArray &document)
{
    int values = 0;
    bool isText = false;
    for (auto at = document.begin(); at != document.end() && values <= maximumValues; ++at) {
        if (*at == '"')
            isText = !isText;
        else if (isText && *at == '\\' && at + 1 != document.end())
            ++at;
        else if (!isText && (*at == ',' || *at == ':' || *at == '[' || *at == '{'))
            ++values;
    }
    return values > maximumValues;
}

bool isFeed(const QJsonObject &object)
{
    return valueOf(object, "items").isArray()
        || textOf(object, "version").contains(QLatin1String("jsonfeed.org/version/"));
}

} // namespace

tl::expected<FeedRecord, FeedRefusal> readJsonFeed(const QByteArray &document)
{
    if (hasManyValues(document))
        return tl::make_unexpected(FeedRefusal{
            QStringLiteral("the document is too complex: it has more than %1 values").arg(maximumValues)});
    QJsonParseError error;
    const QJsonObject feed = QJsonDocument::fromJson(document, &error).object();
    if (error.error != QJsonParseError::NoError) {
        const int line = document.left(error.offset).count('\n') + 1;
        return tl::make_unexpected(FeedRefusal{QStringLiteral("the document is not valid JSON (line %1: %2)")
                                                   .arg(QString::number(line), error.errorString())});
    }
    if (valueOf(feed, "items").toArray().size() > maximumItems)
        return tl::make_unexpected(FeedRefusal{tooManyItems()});
    if (!isFeed(feed))
        return tl::make_unexpected(FeedRefusal{QStringLiteral("the document is JSON but not a feed")});
    return feedOf(feed);
}

} // namespace Tidel
