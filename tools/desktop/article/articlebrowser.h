// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ARTICLEBROWSER_H
#define TIDEL_DESKTOP_ARTICLEBROWSER_H

#include "pictureloader.h"

#include <QHash>
#include <QTextBrowser>

namespace Tidel {

/// Shows rich text in lines that are not too long to be read. It fetches nothing but allowed pictures.
class ArticleBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    explicit ArticleBrowser(QWidget *parent = nullptr);

    /// Shows \a html. \a pictures are the addresses that may be fetched.
    void display(const QString &html, const QStringList &pictures);
    /// Lays \a html out, but does not show it.
    void rehearse(const QString &html) const;
    /// Scrolls by a page. Returns false if the end was reached before; otherwise returns true.
    bool readOn();

    /// How many points the text is larger than the font of the application.
    int zoom() const { return m_zoom; }
    /// Sets zoom(), and remembers it.
    void setZoom(int points);

Q_SIGNALS:
    /// The user wants to read on, but the end is shown.
    void endReached();
    /// The colors have changed, so that the text must be shown again.
    void colorsChanged();

protected:
    QVariant loadResource(int type, const QUrl &name) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void addPicture(const QUrl &address, const QImage &picture);
    void applyZoom();
    void layOut();
    void fitPictures(int width);

    PictureLoader m_loader;
    QSet<QUrl> m_allowed;
    QHash<QUrl, QImage> m_pictures;
    int m_zoom = 0;
};

} // namespace Tidel

#endif
