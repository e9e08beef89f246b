// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef GROUNDINSERTS_P_H
#define GROUNDINSERTS_P_H

#include <QString>
#include <QVector>

/// A triple of an INSERT that names everything it inserts.
struct GroundTriple
{
    /// The kinds of objects.
    enum Kind {
        Iri, ///< an IRI reference, without its angle brackets
        Name, ///< a name with a prefix
        Literal, ///< a literal, without its quotes and escapes
        DateTime ///< a literal of the type xsd:dateTime
    };

    QString subject;
    QString property; ///< an IRI, or a name with a prefix; `rdf:type` for `a`
    Kind kind = Iri;
    QString object;
};

/// A part of an update.
struct UpdatePart
{
    QString text; ///< operations; empty if the part has triples
    QVector<GroundTriple> triples;
};

/**
 * Divides \a update, a statement that Tracker accepts, into ground INSERTs and the rest. An INSERT is ground
 * if it has no pattern, variables, blank nodes and graphs, so that its triples need no parser. Only terms of
 * simple forms are read, and the classes of a subject must stand first.
 *
 * Returns an empty list if nothing is ground.
 */
QVector<UpdatePart> groundInserts(const QString &update);

#endif
