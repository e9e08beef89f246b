// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARGUMENTS_H
#define TIDEL_ARGUMENTS_H

#include <QHash>
#include <QString>
#include <QStringList>

namespace Tidel {

/// The arguments of a command.
struct Arguments
{
    QStringList names; ///< The arguments that are not options.
    QHash<QString, QString> options = {}; ///< The options that are set and their values, by long name.

    /// Returns true if \a option is set; otherwise returns false.
    bool isSet(const char *option) const { return options.contains(QLatin1String(option)); }
    /// The value of \a option; empty if it is not set.
    QString value(const char *option) const { return options.value(QLatin1String(option)); }
};

} // namespace Tidel

#endif
