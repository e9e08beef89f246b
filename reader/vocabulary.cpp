// SPDX-License-Identifier: LGPL-2.1-or-later
#include "vocabulary_p.h"

#include "statements_p.h"

namespace Tidel {

namespace {

const char *const attempt = "read the ontology of the store";

Vocabulary::Range rangeOf(const QString &type)
{
    static const QHash<QString, Vocabulary::Range> ranges{{QStringLiteral("string"), Vocabulary::Text},
                                                          {QStringLiteral("integer"), Vocabulary::Number},
                                                          {QStringLiteral("boolean"), Vocabulary::Truth},
                                                          {QStringLiteral("dateTime"), Vocabulary::Time}};
    return ranges.value(type.section(QLatin1Char('#'), -1), Vocabulary::Resource);
}

/// Shortens full names.
class Prefixes
{
public:
    explicit Prefixes(const Answer &answer)
    {
        while (answer->next())
            m_prefixes.insert(answer->value(0).toString(), answer->value(1).toString());
    }

    QString shortened(const QString &name) const
    {
        const int end = int(name.lastIndexOf(QLatin1Char('#'))) + 1;
        return m_prefixes.value(name.left(end)) + QLatin1Char(':') + name.mid(end);
    }

private:
    QHash<QString, QString> m_prefixes; // by namespace
};

/// Returns true if \a shortName belongs to what describes an ontology; otherwise returns false.
bool isOfAnOntology(const QString &shortName)
{
    static const QStringList prefixes{QStringLiteral("rdf"), QStringLiteral("rdfs"), QStringLiteral("nrl"),
                                      QStringLiteral("xsd"), QStringLiteral("dc")};
    return prefixes.contains(shortName.section(QLatin1Char(':'), 0, 0));
}

} // namespace

Result<Vocabulary> readVocabulary(StorePrivate &store)
{
    const Result<Answer> namespaces = store.run(Statements::namespaces(), attempt);
    const Result<Answer> classes = store.run(Statements::classes(), attempt);
    const Result<Answer> properties = store.run(Statements::properties(), attempt);
    const Result<QStringList> resources = store.texts(Statements::resources(), attempt);
    for (const Result<Answer> *answer : {&namespaces, &classes, &properties}) {
        if (!*answer)
            return Failure(answer->error());
    }
    if (!resources)
        return Failure(resources.error());
    Vocabulary vocabulary;
    const Prefixes prefixes(*namespaces);
    while ((*classes)->next()) {
        const QString name = (*classes)->value(0).toString();
        const QString shortName = prefixes.shortened(name);
        // Any resource can have a tag.
        if (!isOfAnOntology(shortName) || shortName == QLatin1String("rdfs:Resource"))
            vocabulary.classes.insert(shortName, name);
    }
    while ((*properties)->next()) {
        const QString name = (*properties)->value(0).toString();
        if (!isOfAnOntology(prefixes.shortened(name)))
            vocabulary.properties.insert(prefixes.shortened(name),
                                         {name, rangeOf((*properties)->value(1).toString())});
    }
    vocabulary.resources = QSet<QString>(resources->begin(), resources->end());
    return vocabulary;
}

} // namespace Tidel
