// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedsamples.h"

#include <QDir>
#include <QUrl>

using namespace Tidel;

namespace {

const QString charsetSuffix = QStringLiteral(".charset");
const QString expectedSuffix = QStringLiteral(".expected");

/// \a text in one line of visible characters.
QString shown(const QString &text)
{
    QString line;
    for (const QChar c : text) {
        const bool isInvisible =
            c.category() == QChar::Other_Control || c.category() == QChar::Other_Format || c == QChar::Nbsp;
        if (c == QLatin1Char('\n'))
            line += QLatin1String("\\n");
        else if (c == QLatin1Char('\\'))
            line += QLatin1String("\\\\");
        else if (isInvisible)
            line += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            line += c;
    }
    return line;
}

/// Collects lines such as "title: Beans". Values that are not set get no line.
class Description
{
public:
    void add(const char *name, const QString &value)
    {
        if (!value.isEmpty())
            m_text += QLatin1String(name) + QLatin1String(": ") + shown(value) + QLatin1Char('\n');
    }
    void add(const char *name, const QStringList &values)
    {
        for (const QString &value : values)
            add(name, value);
    }
    void add(const char *name, quint64 number) { add(name, number ? QString::number(number) : QString()); }
    void add(const char *name, const QDateTime &time) { add(name, time.toString(Qt::ISODate)); }
    // The base matters for relative addresses only.
    void add(const char *name, const Address &address)
    {
        const bool needsBase = QUrl(address.text).isRelative() && !address.base.isEmpty();
        add(name, needsBase ? QStringLiteral("%1 at %2").arg(address.text, address.base) : address.text);
    }
    void addHeading(const char *heading) { m_text += QLatin1String(heading) + QLatin1Char('\n'); }

    QString text() const { return m_text; }

private:
    QString m_text;
};

QStringList texts(const QVector<int> &numbers)
{
    QStringList list;
    for (const int number : numbers)
        list += QString::number(number);
    return list;
}

void addFile(Description &to, const FileRecord &file)
{
    to.addHeading("file");
    to.add("  address", file.address);
    to.add("  mimeType", file.mimeType);
    to.add("  bytes", file.bytes);
    to.add("  seconds", quint64(file.seconds));
    to.add("  title", file.title);
    to.add("  season", quint64(file.season));
    to.add("  episode", quint64(file.episode));
    to.add("  chapters", file.chapters);
    if (file.isExplicit)
        to.add("  isExplicit", QString::fromLatin1(*file.isExplicit ? "true" : "false"));
}

void addItem(Description &to, const ItemRecord &item)
{
    to.addHeading("\nitem");
    to.add("id", item.id);
    // It matters for items without a link only.
    if (item.isPermalink && item.link.text.isEmpty())
        to.add("isPermalink", QStringLiteral("true"));
    to.add("link", item.link);
    to.add("title", item.title);
    to.add("text", item.text);
    to.add("summary", item.summary);
    to.add("published", item.published);
    to.add("updated", item.updated);
    to.add("author", item.authors);
    to.add("category", item.categories);
    to.add("comments", item.comments);
    to.add("language", item.language);
    to.add("thumbnail", item.thumbnail);
    to.add("base", item.base);
    for (const FileRecord &file : item.files)
        addFile(to, file);
}

QString describeRefusal(const FeedRefusal &refusal)
{
    Description description;
    description.add("refused", refusal.reason);
    if (refusal.isWebPage)
        description.add("isWebPage", QStringLiteral("true"));
    return description.text();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QVector<FeedSample> samplesIn(const QString &folder)
{
    const QDir data(QStringLiteral(TIDEL_TEST_DATA));
    QVector<FeedSample> samples;
    const QStringList files = QDir(data.filePath(folder)).entryList(QDir::Files, QDir::Name);
    for (const QString &file : files) {
        if (file.endsWith(charsetSuffix) || file.endsWith(expectedSuffix))
            continue;
        const QString path = data.filePath(folder + QLatin1Char('/') + file);
        samples.append(
            {folder + QLatin1Char('/') + file, contentOf(path), contentOf(path + charsetSuffix).trimmed()});
    }
    return samples;
}

QString describe(const tl::expected<FeedRecord, FeedRefusal> &feed)
{
    if (!feed)
        return describeRefusal(feed.error());
    Description description;
    description.add("format", feed->format);
    description.add("title", feed->title);
    description.add("description", feed->description);
    description.add("website", feed->website);
    description.add("image", feed->image);
    description.add("icon", feed->icon);
    description.add("language", feed->language);
    description.add("copyright", feed->copyright);
    description.add("minutesToLive", quint64(feed->minutesToLive));
    description.add("skipHours", texts(feed->skipHours).join(QLatin1Char(' ')));
    description.add("skipDays", feed->skipDays.join(QLatin1Char(' ')));
    description.add("updatePeriod", feed->updatePeriod);
    description.add("updateFrequency", quint64(feed->updateFrequency));
    description.add("updateBase", feed->updateBase);
    description.add("hub", feed->hub);
    description.add("self", feed->self);
    description.add("note", feed->notes);
    for (const ItemRecord &item : feed->items)
        addItem(description, item);
    return description.text();
}
