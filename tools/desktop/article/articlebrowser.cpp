// SPDX-License-Identifier: LGPL-2.1-or-later
#include "articlebrowser.h"

#include "articlecolors.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSettings>
#include <QStyle>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>

namespace Tidel {

namespace {

constexpr int smallestZoom = -4;
constexpr int largestZoom = 24;
constexpr int margin = 20;
constexpr int widestInCharacters = 84;
// A line is a little wider than the picture on it.
constexpr int slack = 4;

/// The size that the article asks for, which fitting the picture to the screen changes.
enum Property { WantedSize = QTextFormat::UserProperty + 1 };

QSizeF wantedSize(const QTextImageFormat &format)
{
    return format.hasProperty(WantedSize) ? format.property(WantedSize).toSizeF()
                                          : QSizeF(format.width(), format.height());
}

/// The size on the screen, in the proportions of \a picture. The size is \a wanted as long as there is none.
QSizeF fittedSize(const QSizeF &wanted, const QSize &picture, int width)
{
    QSizeF size = picture.isEmpty() ? wanted : QSizeF(picture);
    if (wanted.width() > 0)
        size *= wanted.width() / size.width();
    else if (wanted.height() > 0)
        size *= wanted.height() / size.height();
    return size.width() > width ? size * (width / size.width()) : size;
}

int reservedForBar(const QStyle &style)
{
    return style.pixelMetric(QStyle::PM_ScrollBarExtent)
        + style.pixelMetric(QStyle::PM_ScrollView_ScrollBarSpacing);
}

/// What stands for a picture until it has arrived.
QImage emptyPicture()
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

ArticleBrowser::ArticleBrowser(QWidget *parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(0);
    setTextInteractionFlags(Qt::TextBrowserInteraction);
    m_zoom = QSettings().value(QStringLiteral("article/zoom")).toInt();
    applyZoom();
    connect(&m_loader, &PictureLoader::fetched, this, &ArticleBrowser::addPicture);
}

void ArticleBrowser::display(const QString &html, const QStringList &pictures)
{
    m_loader.reset();
    m_pictures.clear();
    m_allowed.clear();
    for (const QString &address : pictures)
        m_allowed.insert(QUrl(address));
    document()->setDefaultStyleSheet(articleStyle(ArticleColors(palette())));
    setHtml(html);
    layOut();
}

void ArticleBrowser::rehearse(const QString &html) const
{
    QTextDocument text;
    text.setDefaultFont(font());
    text.setDefaultStyleSheet(articleStyle(ArticleColors(palette())));
    text.setHtml(html);
    text.setTextWidth(width());
}

bool ArticleBrowser::readOn()
{
    QScrollBar *bar = verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    return !isAtEnd;
}

void ArticleBrowser::setZoom(int points)
{
    m_zoom = qBound(smallestZoom, points, largestZoom);
    QSettings().setValue(QStringLiteral("article/zoom"), m_zoom);
    applyZoom();
    layOut();
}

void ArticleBrowser::applyZoom()
{
    QFont font = QApplication::font(this);
    font.setPointSizeF(qMax(4.0, font.pointSizeF() + 1 + m_zoom));
    setFont(font);
}

QVariant ArticleBrowser::loadResource(int type, const QUrl &name)
{
    if (type != QTextDocument::ImageResource)
        return {};
    if (m_allowed.contains(name))
        m_loader.fetch(name);
    return m_pictures.value(name, emptyPicture());
}

void ArticleBrowser::addPicture(const QUrl &address, const QImage &picture)
{
    m_pictures.insert(address, picture);
    document()->addResource(QTextDocument::ImageResource, address, picture);
    layOut();
}

void ArticleBrowser::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier)
        return QTextBrowser::keyPressEvent(event);
    event->accept();
    if (!readOn())
        Q_EMIT endReached();
}

bool ArticleBrowser::focusNextPrevChild(bool next)
{
    const bool isHere = QTextBrowser::focusNextPrevChild(next);
    // Who goes from link to link by keys wants to know where they lead, too.
    const QTextCursor cursor = textCursor();
    const bool isOnLink = isHere && cursor.hasSelection();
    Q_EMIT highlighted(QUrl(isOnLink ? cursor.charFormat().anchorHref() : QString()));
    return isHere;
}

void ArticleBrowser::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier))
        return QTextBrowser::wheelEvent(event);
    event->accept();
    if (event->angleDelta().y() != 0)
        setZoom(m_zoom + (event->angleDelta().y() > 0 ? 1 : -1));
}

void ArticleBrowser::resizeEvent(QResizeEvent *event)
{
    QTextBrowser::resizeEvent(event);
    layOut();
}

void ArticleBrowser::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        Q_EMIT colorsChanged();
}

void ArticleBrowser::layOut()
{
    // Without the scroll bar, which a picture may bring.
    const int available = width() - reservedForBar(*style());
    const int widest = fontMetrics().averageCharWidth() * widestInCharacters;
    const int side = qMax(margin, (available - widest) / 2);
    QTextFrameFormat format = document()->rootFrame()->frameFormat();
    if (int(format.leftMargin()) != side) {
        format.setMargin(margin);
        format.setLeftMargin(side);
        format.setRightMargin(side);
        document()->rootFrame()->setFrameFormat(format);
    }
    fitPictures(qMax(1, available - 2 * side - slack));
}

void ArticleBrowser::fitPictures(int width)
{
    if (m_allowed.isEmpty())
        return;
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            QTextImageFormat format = it.fragment().charFormat().toImageFormat();
            if (!format.isValid())
                continue;
            const QSizeF wanted = wantedSize(format);
            const QSizeF size = fittedSize(wanted, m_pictures.value(QUrl(format.name())).size(), width);
            if (size.width() <= 0)
                continue;
            format.setProperty(WantedSize, wanted);
            format.setWidth(size.width());
            format.setHeight(size.height());
            cursor.setPosition(it.fragment().position());
            cursor.setPosition(it.fragment().position() + it.fragment().length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
            // The distance of lines is a part of their height.
            QTextBlockFormat lines;
            lines.setLineHeight(100, QTextBlockFormat::ProportionalHeight);
            cursor.mergeBlockFormat(lines);
        }
    }
    cursor.endEditBlock();
}

} // namespace Tidel
