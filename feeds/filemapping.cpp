// SPDX-License-Identifier: LGPL-2.1-or-later
#include "filemapping.h"

#include "commonmapping.h"
#include "feedlimits.h"
#include "markup.h"

#include <QRegularExpression>

#include <tuple>

namespace Tidel {

namespace {

using V = Vocabulary;

/// A file, and how good it is among several forms of the same file.
struct Rendition
{
    FileRecord file;
    std::tuple<bool, quint64, quint64> rank;
    QString group; ///< Renditions of one group are forms of one file; empty if there is only one.
};

/// The number of seconds in "3723", "62:03" or "1:02:03"; 0 if there is none.
int secondsIn(const QString &text)
{
    if (text.count(QLatin1Char(':')) > 2)
        return 0;
    double seconds = 0;
    const QStringList parts = text.split(QLatin1Char(':'));
    for (const QString &part : parts) {
        bool isNumber = false;
        const double number = part.trimmed().toDouble(&isNumber);
        if (!isNumber || number < 0)
            return 0;
        seconds = seconds * 60 + number;
    }
    constexpr double maximum = 1000 * 3600.0;
    return seconds < maximum ? int(seconds) : 0;
}

/// The number in \a element; 0 if there is none or if it is too large.
int countIn(const Element *element)
{
    const quint64 number = element ? numberIn(element->text) : 0;
    return number <= 100000 ? int(number) : 0;
}

std::optional<bool> explicitnessIn(const Element *element)
{
    const QString text = lineOf(element).toLower();
    if (text == QLatin1String("yes") || text == QLatin1String("true") || text == QLatin1String("explicit"))
        return true;
    if (text == QLatin1String("no") || text == QLatin1String("false") || text == QLatin1String("clean"))
        return false;
    return std::nullopt;
}

quint64 areaOf(const Element &media)
{
    return numberIn(media.value("width")) * numberIn(media.value("height"));
}

/// The address in \a media without what chooses a size.
std::string_view placeOf(const Element &media)
{
    const std::string_view address = media.value("url");
    return address.substr(0, address.find('?'));
}

bool isPicture(const Element &media)
{
    static const QRegularExpression pictureName(QStringLiteral("\\.(?:avif|gif|jpe?g|png|webp)$"),
                                                QRegularExpression::CaseInsensitiveOption);
    if (!media.value("type").empty())
        return media.value("type").substr(0, 6) == "image/";
    const bool hasPictureName =
        media.value("medium").empty() && pictureName.match(lineOf(placeOf(media))).hasMatch();
    return media.value("medium") == "image" || hasPictureName;
}

FileRecord enclosureIn(const Element &enclosure)
{
    FileRecord file;
    for (const char *attribute : {"url", "href", "resource"}) {
        if (file.address.text.isEmpty())
            file.address = addressIn(enclosure, attribute);
    }
    file.mimeType = lineOf(enclosure.value("type"));
    file.bytes = numberIn(enclosure.value("length"));
    file.title = lineOf(enclosure.value("title"));
    return file;
}

Rendition renditionIn(const Element &media)
{
    Rendition rendition;
    FileRecord &file = rendition.file;
    file.address = addressIn(media, "url");
    file.mimeType = lineOf(media.value("type"));
    file.bytes = numberIn(media.value("filesize"));
    file.seconds = secondsIn(lineOf(media.value("duration")));
    file.title = titleOf(media.find({V::Media, "title"}));
    const quint64 width = areaOf(media) > 0 ? areaOf(media) : numberIn(media.value("width"));
    rendition.rank = {media.value("isdefault") == "true", width,
                      std::max(file.bytes, numberIn(media.value("bitrate")))};
    return rendition;
}

void keepBest(QVector<Rendition> &renditions, const Rendition &candidate)
{
    for (Rendition &known : renditions) {
        if (candidate.group.isEmpty() || known.group != candidate.group)
            continue;
        if (candidate.rank > known.rank)
            known = candidate;
        return;
    }
    if (renditions.size() <= maximumFiles)
        renditions.append(candidate);
}

/// What \a item says of its recordings goes to each file that is no picture.
void describe(QVector<FileRecord> &files, const Element &item)
{
    const Element *chapters = item.find({V::Podcast, "chapters"});
    const auto number = [&](const char *name) {
        const int count = countIn(item.find({V::Itunes, name}));
        return count > 0 ? count : countIn(item.find({V::Podcast, name}));
    };
    for (FileRecord &file : files) {
        if (file.mimeType.startsWith(QLatin1String("image/")))
            continue;
        if (file.seconds == 0)
            file.seconds = secondsIn(lineOf(item.find({V::Itunes, "duration"})));
        if (file.title.isEmpty())
            file.title = lineOf(item.find({V::Itunes, "title"}));
        file.season = number("season");
        file.episode = number("episode");
        file.chapters = chapters ? addressIn(*chapters, "url") : Address();
        file.isExplicit = explicitnessIn(item.find({V::Itunes, "explicit"}));
    }
}

void add(QVector<FileRecord> &files, const FileRecord &file)
{
    if (file.address.text.trimmed().isEmpty())
        return;
    for (FileRecord &known : files) {
        if (known.address.text != file.address.text)
            continue;
        known.bytes = known.bytes > 0 ? known.bytes : file.bytes;
        known.seconds = known.seconds > 0 ? known.seconds : file.seconds;
        known.mimeType = known.mimeType.isEmpty() ? file.mimeType : known.mimeType;
        return;
    }
    // One too many shows that some were left out.
    if (files.size() <= maximumFiles)
        files.append(file);
}

bool isEnclosure(const Element &element)
{
    return element.is({V::Core, "enclosure"}) || element.is({V::Enclosure, "enclosure"})
        || (element.is({V::Core, "link"}) && element.value("rel") == "enclosure");
}

/// The renditions of the media of \a item. All media of a group are forms of one file.
QVector<Rendition> renditionsOf(const Element &item)
{
    QVector<Rendition> renditions;
    int groups = 0;
    for (const Element &child : item.children) {
        if (child.is({V::Media, "content"})) {
            Rendition rendition = renditionIn(child);
            rendition.group = isPicture(child) ? lineOf(placeOf(child)) : QString();
            keepBest(renditions, rendition);
        }
        if (!child.is({V::Media, "group"}))
            continue;
        ++groups;
        for (const Element &media : child.children) {
            if (!media.is({V::Media, "content"}))
                continue;
            Rendition rendition = renditionIn(media);
            rendition.group = QString::number(groups);
            keepBest(renditions, rendition);
        }
    }
    return renditions;
}

const Element *largestThumbnail(const Element &parent)
{
    const Element *largest = nullptr;
    for (const Element &child : parent.children) {
        const Element *candidate =
            child.is({V::Media, "thumbnail"}) && !child.value("url").empty() ? &child : nullptr;
        if (child.is({V::Media, "group"}) || child.is({V::Media, "content"}))
            candidate = largestThumbnail(child);
        if (candidate && (!largest || areaOf(*candidate) > areaOf(*largest)))
            largest = candidate;
    }
    return largest;
}

} // namespace

QVector<FileRecord> filesOf(const Element &item)
{
    QVector<FileRecord> files;
    for (const Element &child : item.children) {
        if (isEnclosure(child))
            add(files, enclosureIn(child));
    }
    const QVector<Rendition> renditions = renditionsOf(item);
    for (const Rendition &rendition : renditions)
        add(files, rendition.file);
    describe(files, item);
    return files;
}

Address thumbnailOf(const Element &item)
{
    if (const Element *thumbnail = largestThumbnail(item))
        return addressIn(*thumbnail, "url");
    if (const Element *image = item.find({V::Itunes, "image"}))
        return addressIn(*image, "href");
    const Element *image = item.find({V::Core, "image"});
    if (const Element *url = image ? image->find({V::Core, "url"}) : nullptr)
        return addressIn(*url);
    Rendition best;
    for (const Rendition &rendition : renditionsOf(item)) {
        if (rendition.file.mimeType.startsWith(QLatin1String("image/")) && rendition.rank >= best.rank)
            best = rendition;
    }
    return best.file.address;
}

} // namespace Tidel
