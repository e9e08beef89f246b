// SPDX-License-Identifier: LGPL-2.1-or-later
#include "paintedicon.h"

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

#include <cmath>
#include <cstdlib>

namespace Tidel {

namespace {

class PaintedIconEngine : public QIconEngine
{
public:
    explicit PaintedIconEngine(const IconPainting &painting) : m_painting(painting) { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text;
        const int side = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2.0, rect.y() + (rect.height() - side) / 2.0);
        painter->scale(side, side);
        painter->setPen(QPen(QGuiApplication::palette().color(group, role), 0.08, Qt::SolidLine, Qt::RoundCap,
                             Qt::RoundJoin));
        m_painting(*painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new PaintedIconEngine(*this); }

private:
    const IconPainting m_painting;
};

QPolygonF star()
{
    constexpr double pi = 3.14159265358979;
    QPolygonF points;
    for (int corner = 0; corner < 10; ++corner) {
        const double radius = corner % 2 == 0 ? 0.44 : 0.19;
        const double angle = pi * (corner / 5.0 - 0.5);
        points.append(QPointF(0.5 + radius * std::cos(angle), 0.53 + radius * std::sin(angle)));
    }
    return points;
}

/// How light \a picture is, 0 to 255, without its transparent parts.
int lightnessOf(const QImage &picture)
{
    const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32);
    qint64 light = 0;
    qint64 opaque = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            const QRgb pixel = pixels.pixel(x, y);
            light += qint64(qGray(pixel)) * qAlpha(pixel);
            opaque += qAlpha(pixel);
        }
    }
    return opaque == 0 ? 0 : int(light / opaque);
}

/// Paints \a picture into \a place, reduced by all of its pixels.
void paintPicture(QPainter &painter, const QImage &picture, const QRectF &place)
{
    const QTransform transform = painter.deviceTransform();
    const QSize size = transform.mapRect(place).size().toSize();
    const QImage fit = picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QRectF target(0, 0, fit.width() / transform.m11(), fit.height() / transform.m22());
    target.moveCenter(place.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, fit);
}

} // namespace

QIcon paintedIcon(const IconPainting &painting) { return QIcon(new PaintedIconEngine(painting)); }

QIcon unreadIcon()
{
    return paintedIcon([](QPainter &painter) {
        painter.setBrush(QGuiApplication::palette().highlight());
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(0.5, 0.5), 0.24, 0.24);
    });
}

QIcon starIcon(bool isFilled)
{
    return paintedIcon([isFilled](QPainter &painter) {
        QColor outline = painter.pen().color();
        outline.setAlphaF(0.35F);
        const QColor gold(0xe5, 0xa5, 0x0a);
        painter.setPen(QPen(isFilled ? gold : outline, 0.06, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        if (isFilled)
            painter.setBrush(gold);
        painter.drawPolygon(star());
    });
}

QIcon listIcon()
{
    return paintedIcon([](QPainter &painter) {
        for (const double y : {0.25, 0.5, 0.75})
            painter.drawLine(QPointF(0.15, y), QPointF(0.85, y));
    });
}

QIcon folderIcon()
{
    return paintedIcon([](QPainter &painter) {
        painter.drawPolygon(
            QPolygonF({{0.12, 0.22}, {0.4, 0.22}, {0.5, 0.34}, {0.88, 0.34}, {0.88, 0.8}, {0.12, 0.8}}));
    });
}

QIcon searchIcon()
{
    return paintedIcon([](QPainter &painter) {
        painter.drawEllipse(QPointF(0.42, 0.42), 0.26, 0.26);
        painter.drawLine(QPointF(0.61, 0.61), QPointF(0.86, 0.86));
    });
}

QIcon errorIcon()
{
    return paintedIcon([](QPainter &painter) {
        painter.setPen(QPen(QColor(0xd9, 0x48, 0x0f), 0.09, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolygon(QPolygonF({{0.5, 0.12}, {0.92, 0.86}, {0.08, 0.86}}));
        painter.drawLine(QPointF(0.5, 0.4), QPointF(0.5, 0.6));
        painter.drawPoint(QPointF(0.5, 0.74));
    });
}

QIcon letterIcon(const QString &title, const QString &key)
{
    const auto isShown = [](QChar c) { return c.isLetterOrNumber(); };
    const auto first = std::find_if(title.cbegin(), title.cend(), isShown);
    const QString letter = first == title.cend() ? QString(QLatin1Char('?')) : QString(first->toUpper());
    // Not qHash(): the colour must be the same in the next run.
    uint sum = 0;
    for (const QChar c : key)
        sum = sum * 31 + c.unicode();
    const QColor colour = QColor::fromHsl(int(sum % 360), 110, 105);
    return paintedIcon([letter, colour](QPainter &painter) {
        painter.setBrush(colour);
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(QRectF(0.06, 0.06, 0.88, 0.88), 0.2, 0.2);
        painter.setPen(Qt::white);
        QFont font = QGuiApplication::font();
        font.setBold(true);
        font.setPixelSize(64);
        painter.setFont(font);
        painter.scale(0.01, 0.01);
        painter.drawText(QRectF(0, 0, 100, 100), Qt::AlignCenter, letter);
    });
}

QIcon pictureIcon(const QImage &picture)
{
    if (picture.isNull())
        return {};
    return paintedIcon([picture, lightness = lightnessOf(picture)](QPainter &painter) {
        constexpr int leastContrast = 60;
        const int background = QGuiApplication::palette().color(QPalette::Base).lightness();
        QRectF place(0.06, 0.06, 0.88, 0.88);
        if (std::abs(lightness - background) < leastContrast) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(lightness < 128 ? QColor(0xf0, 0xf0, 0xf0) : QColor(0x50, 0x50, 0x50));
            painter.drawRoundedRect(place, 0.2, 0.2);
            place.adjust(0.12, 0.12, -0.12, -0.12);
        }
        paintPicture(painter, picture, place);
    });
}

} // namespace Tidel
