// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARGUMENTS_H
#define TIDEL_ARGUMENTS_H

#include <QHash>
#include <QString>
#include <QStringList>

namespace Tidel {

/// What a command was given: names, and the options that are set, with their values, by their long names.
struct Arguments
{
    QStringList names;
    QHash<QString, QString> options = {};

    bool isSet(const char *option) const { return options.contains(QLatin1String(option)); }
    QString value(const char *option) const { return options.value(QLatin1String(option)); }
};

} // namespace Tidel

#endif
