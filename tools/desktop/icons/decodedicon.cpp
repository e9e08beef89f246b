// SPDX-License-Identifier: LGPL-2.1-or-later
#include "decodedicon.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

namespace Tidel {

namespace {

constexpr int maximumSide = 2048; // of what is decoded
constexpr int minimumSide = 8; // Smaller ones count readers.
constexpr int maximumImages = 32; // in a file

/// Returns true if \a bytes contain a PNG picture that is too large; otherwise returns false. An ICO file
/// says nothing of the size of those in it.
bool hasLargePng(const QByteArray &bytes)
{
    static const QByteArray head("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
    constexpr int sizes = 8;
    for (auto at = bytes.indexOf(head); at >= 0; at = bytes.indexOf(head, at + 1)) {
        const QByteArray size = bytes.mid(at + head.size(), sizes);
        if (size.size() < sizes || qFromBigEndian<quint32>(size.constData()) > maximumSide
            || qFromBigEndian<quint32>(size.constData() + 4) > maximumSide)
            return true;
    }
    return false;
}

/// Goes to the image of an ICO file that is just large enough, or else to the largest one.
void chooseImage(QImageReader *reader)
{
    const int count = qMin(reader->imageCount(), maximumImages);
    int best = 0;
    int bestWidth = 0;
    for (int i = 0; i < count; ++i) {
        reader->jumpToImage(i);
        const int width = reader->size().width() > 0 ? reader->size().width() : 256;
        const bool isBetter =
            bestWidth < iconSide ? width > bestWidth : width >= iconSide && width < bestWidth;
        if (isBetter) {
            best = i;
            bestWidth = width;
        }
    }
    reader->jumpToImage(best);
}

bool isFit(const QSize &size)
{
    const int shorter = qMin(size.width(), size.height());
    const int longer = qMax(size.width(), size.height());
    return shorter >= minimumSide && longer <= maximumSide && longer * 3 <= shorter * 4;
}

} // namespace

QImage decodedIcon(const QByteArray &bytes)
{
    static const QList<QByteArray> formats{"png", "jpeg", "gif", "webp", "ico"};
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format();
    if (!formats.contains(format) || hasLargePng(bytes))
        return {};
    if (format == "ico")
        chooseImage(&reader);
    else if (!isFit(reader.size()))
        return {};
    const QImage icon = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (!isFit(icon.size()))
        return {};
    const bool isLarge = icon.width() > iconSide || icon.height() > iconSide;
    return isLarge ? icon.scaled(iconSide, iconSide, Qt::KeepAspectRatio, Qt::SmoothTransformation) : icon;
}

} // namespace Tidel
