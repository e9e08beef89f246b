// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QUERYSHAPE_P_H
#define QUERYSHAPE_P_H

#include "filteredvalue_p.h"

#include <QVector>

#include <memory>

/// What the text of a statement says of its placeholders. The texts of a program are few and run often, so
/// that it is kept for each.
struct QueryShape
{
    /// A placeholder.
    struct Place
    {
        int start; ///< in the text
        int end;
        QString name;
        bool isSubject; ///< It is the subject of a triple.
        QString property; ///< if it is the object of a triple, the property as the text names it
    };

    /// Reads \a statement.
    explicit QueryShape(const QString &statement);
    /// Returns what was kept for \a statement, or reads it.
    static std::shared_ptr<const QueryShape> of(const QString &statement);

    QVector<Place> places;
    /// The statement uses nothing that hinders parameters: prefixes of its own, or Tracker's parameters.
    bool mayHaveParameters;
    std::optional<FilteredValue> filtered;
};

#endif
