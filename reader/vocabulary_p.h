// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_VOCABULARY_P_H
#define TIDEL_VOCABULARY_P_H

#include "store_p.h"

#include <QHash>
#include <QSet>

namespace Tidel {

/// The classes and properties of feeds. Their short names, such as "nie:title", are the names of tables and
/// columns.
struct Vocabulary
{
    /// What the values of a property are.
    enum Range { Text, Number, Truth, Time, Resource };

    struct Property
    {
        QString name; ///< The full name.
        Range range = Text;
    };

    QHash<QString, Property> properties; ///< By short name.
    QHash<QString, QString> classes; ///< Full names by short names.
    QSet<QString> resources; ///< The full names of all that the ontology describes.
};

/// Reads the vocabulary of \a store, which must be new.
Result<Vocabulary> readVocabulary(StorePrivate &store);

} // namespace Tidel

#endif
