// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef LINELAYOUT_P_H
#define LINELAYOUT_P_H

#include "qstlogger.h"

/// The layout of a line of the log.
struct LineLayout
{
    QString format; ///< the template, with placeholders such as "<file>"
    QstLogger::Field timestamp;
    QstLogger::Field file;
    QstLogger::Field line;
    QstLogger::Field msgType;
    QstLogger::Field function;

    /// \name Texts that replace the placeholders of the format
    /// @{
    QString timestampText() const;
    QString fileText(const QString &path) const;
    QString lineText(const QString &number) const;
    QString functionText(const QString &signature, const QString &name) const;
    QString msgTypeText(QtMsgType type) const;
    /// @}

    /**
     * Returns the format with its placeholders replaced.
     *
     * The texts may come from hostile feeds. So a placeholder that occurs several times is not replaced if
     * the line would become longer than 16 Mi characters.
     */
    // contract: replaces timestamp, file, function, type, line and message in this order, also where an
    // earlier text contains a placeholder. Log readers know the result.
    QString filled(const QstLogger::LogInfo &info) const;
};

#endif
