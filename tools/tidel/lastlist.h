// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LASTLIST_H
#define TIDEL_LASTLIST_H

#include <QString>
#include <QStringList>

namespace Tidel {

/**
 * The rows of the last list that a command has shown in this terminal, so that the next command can name them
 * by their numbers. There is one of each kind for each session of a terminal. A process without a terminal,
 * such as that of a timer, has none.
 *
 * The lists are in `$XDG_RUNTIME_DIR/tidel` or, if that is not set, in the cache of the user. A list is
 * deleted when its session has ended and another list is shown.
 */
class LastList
{
public:
    enum Kind { Channels, Messages };

    /// The last list of \a kind.
    explicit LastList(Kind kind);

    /// Notes that the rows 1, 2 and so on are \a uris. Notes the first 10,000 at most.
    void remember(const QStringList &uris) const;
    /// The URI in row \a number; empty if there is no such row.
    QString uri(int number) const { return rows().value(number - 1); }
    /// The number of rows; 0 if there is no list.
    int size() const { return int(rows().size()); }

    /// The number of the row that \a name means; 0 if it is not a number.
    static int rowNumber(const QString &name);

private:
    QStringList rows() const;

    QString m_path; ///< Empty if there is no terminal.
};

} // namespace Tidel

#endif
