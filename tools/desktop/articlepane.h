// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ARTICLEPANE_H
#define TIDEL_DESKTOP_ARTICLEPANE_H

#include "articleview.h"

#include <TidelReader/error.h>

#include <QFuture>

namespace Tidel {

class Archive;

/// Shows a message of an archive.
class ArticlePane : public ArticleView
{
    Q_OBJECT

public:
    explicit ArticlePane(Archive *archive, QWidget *parent = nullptr);

    /// Shows the message \a uri, as soon as it is read; nothing if \a uri is empty.
    void load(const QString &uri);
    /// Does for the message \a uri, without showing it, what takes longest for the first message: the store
    /// prepares its queries, and fonts are loaded. Does so once.
    void warmUp(const QString &uri);
    /// Reads the message again.
    void reload();
    /// The address of the message; empty if it has none that a browser can show.
    QUrl link() const;
    /// The name of the file of the enclosure \a uri of the message; empty if there is none.
    QString fileNameOf(const QString &uri) const;
    /// The downloaded file of the enclosure \a uri of the message; empty if there is none.
    QUrl fileOf(const QString &uri) const;

Q_SIGNALS:
    /// The message \a uri is shown.
    void shown(const QString &uri);
    /// The message could not be read; \a text is for the user.
    void failed(const QString &text);

private:
    FeedEnclosure enclosure(const QString &uri) const;

    Archive *const m_archive;
    QString m_wanted;
    QFuture<Result<ShownMessage>> m_reading;
    bool m_isWarm = false;
};

} // namespace Tidel

#endif
