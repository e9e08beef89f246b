// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STATEMENTTEMPLATE_P_H
#define STATEMENTTEMPLATE_P_H

#include <QLatin1String>
#include <QList>
#include <QPair>
#include <QString>

/// The value of each placeholder of a template, such as `%link`.
using TemplateValues = QList<QPair<QLatin1String, QString>>;

/**
 * Returns the template \a text with each placeholder replaced by its value. Placeholders in values are not
 * replaced.
 *
 * A value that would end the IRI or literal around its placeholder could add statements of its own. With such
 * a value, the returned statement has a syntax error, so that the store refuses the whole update.
 */
// contract: values are pasted without escaping. Other programs know the statements so.
QString fillTemplate(QLatin1String text, const TemplateValues &values);

#endif
