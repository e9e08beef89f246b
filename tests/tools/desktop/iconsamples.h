// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ICONSAMPLES_H
#define ICONSAMPLES_H

#include <QBuffer>
#include <QImage>
#include <QtEndian>

inline QByteArray picture(const QSize &size, const QColor &color = Qt::red, const char *format = "PNG")
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

/// \a value as files for little processors have it.
template <typename T> QByteArray number(T value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

/// A bitmap of an ICO file that says it is so large.
inline QByteArray boastingBitmap(quint32 width, quint32 height)
{
    return number(quint32(40)) + number(width) + number(height * 2) + number(quint16(1)) + number(quint16(32))
        + QByteArray(4096, '\0');
}

/// A PNG picture that says it is so large.
inline QByteArray boast(quint32 width, quint32 height)
{
    QByteArray bytes = picture({16, 16});
    qToBigEndian(width, bytes.data() + 16);
    qToBigEndian(height, bytes.data() + 20);
    return bytes;
}

/// An ICO file with \a images. It says that they are so wide and high.
inline QByteArray iconFile(const QList<QByteArray> &images, const QList<int> &widths)
{
    QByteArray file = number(quint16(0)) + number(quint16(1)) + number(quint16(images.size()));
    int offset = int(file.size() + 16 * images.size());
    for (int i = 0; i < images.size(); ++i) {
        file += QByteArray(2, char(widths.at(i))) + QByteArray(2, '\0') + number(quint16(1))
            + number(quint16(32)) + number(quint32(images.at(i).size())) + number(quint32(offset));
        offset += int(images.at(i).size());
    }
    return file + images.join();
}

#endif
