// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef LINELAYOUT_P_H
#define LINELAYOUT_P_H

#include "qstlogger.h"

/// What a line of the log looks like.
struct LineLayout
{
    QString format;
    QstLogger::Field timestamp;
    QstLogger::Field file;
    QstLogger::Field line;
    QstLogger::Field msgType;
    QstLogger::Field function;

    /// \name What stands for the placeholders of the format
    /// @{
    QString timestampText() const;
    QString fileText(const QString &path) const;
    QString lineText(const QString &number) const;
    QString functionText(const QString &signature, const QString &name) const;
    QString msgTypeText(QtMsgType type) const;
    /// @}

    /**
     * The format with its placeholders filled, in the order timestamp, file, function, type, line, message:
     * each is also found in the texts that were filled in before it.
     *
     * Some of these texts are strangers'. A placeholder that is there several times stays as it is where
     * filling it would make the line longer than 16 Mi characters.
     */
    QString filled(const QstLogger::LogInfo &info) const;
};

#endif
