// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STATEMENTTEMPLATE_P_H
#define STATEMENTTEMPLATE_P_H

#include <QLatin1String>
#include <QList>
#include <QPair>
#include <QString>

/// What stands for each place of a template, such as `%link`.
using TemplateValues = QList<QPair<QLatin1String, QString>>;

/**
 * The statement \a text with its places filled, in one pass: a value is never searched for places again.
 *
 * Values are pasted as they are. One that would end the IRI or the literal that its place stands in makes the
 * statement one that no store accepts, so that such a value can spoil its own update and do nothing else.
 */
QString fillTemplate(QLatin1String text, const TemplateValues &values);

#endif
