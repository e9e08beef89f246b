// SPDX-License-Identifier: LGPL-2.1-or-later
#include "salvage_p.h"

#include "damagedtables_p.h"
#include "statements_p.h"
#include "vocabulary_p.h"

#include <QDateTime>
#include <QHash>
#include <QSet>
#include <QUrl>

#include <feedchannel.h>

#include <algorithm>

namespace Tidel {

namespace {

const char *const attempt = "copy what can be read to a new store";

/// Writes many facts to a store.
class FactWriter
{
public:
    explicit FactWriter(StorePrivate &store) : m_store(store) { }

    void add(const QString &fact)
    {
        m_facts.append(fact);
        if (m_facts.size() >= maximumFacts)
            flush();
    }

    /// Writes what is not written yet. Fails if the store failed since the beginning.
    Result<void> flush()
    {
        if (m_result)
            m_result = write(m_facts);
        m_facts.clear();
        return m_result;
    }

private:
    /// Leaves out the facts that the store refuses: a damaged page can contain anything.
    Result<void> write(const QStringList &facts)
    {
        if (facts.isEmpty())
            return {};
        const Result<void> written = m_store.update(Statements::insertFacts(facts), attempt);
        if (written || written.error().kind() != Error::StoreRefused)
            return written;
        const int half = int(facts.size()) / 2;
        return half == 0 ? Result<void>()
                         : write(facts.mid(0, half)).and_then([&] { return write(facts.mid(half)); });
    }

    static constexpr int maximumFacts = 500;

    StorePrivate &m_store;
    QStringList m_facts;
    Result<void> m_result;
};

/// Copies tables of Tracker. A class has a table with a column for each property with one value, and a table
/// for each property with several values: "CLASS_PROPERTY".
class Copy
{
public:
    Copy(StorePrivate &target, const Vocabulary &vocabulary)
        : m_target(target), m_vocabulary(vocabulary), m_writer(target)
    {
    }

    /// Notes that the resource number \a id has the name \a uri.
    void addName(qlonglong id, const QString &uri)
    {
        if (isUsableName(uri))
            m_names.insert(id, uri);
    }

    Result<void> copy(SqliteFile &file, const Table &table)
    {
        const QString className = m_vocabulary.classes.value(table.name.section(QLatin1Char('_'), 0, 0));
        QVector<Vocabulary::Property> properties;
        for (const QString &column : table.columns)
            properties.append(m_vocabulary.properties.value(column));
        const bool isKnown = std::any_of(properties.cbegin(), properties.cend(),
                                         [](const auto &property) { return !property.name.isEmpty(); });
        if (!className.isEmpty() && (isKnown || !table.name.startsWith(QLatin1String("rdfs:"))))
            readRows(file, table, [&](const QVariantList &row) { addRow(className, properties, row); });
        return m_writer.flush();
    }

private:
    static bool isUsableName(const QString &uri)
    {
        return uri.contains(QLatin1Char(':'))
            && Statements::iri(uri) == QLatin1Char('<') + uri + QLatin1Char('>');
    }

    /// The name of the resource number \a id, a new one if it is lost.
    QString nameOf(qlonglong id)
    {
        QString &name = m_names[id];
        if (name.isEmpty())
            name = m_target.connection.createUrn().toString();
        return name;
    }

    void addRow(const QString &className, const QVector<Vocabulary::Property> &properties,
                const QVariantList &row)
    {
        if (row.first().userType() != QMetaType::LongLong)
            return;
        const QString subject = nameOf(row.first().toLongLong());
        if (m_vocabulary.resources.contains(subject))
            return;
        QSet<qlonglong> &known = m_typed[className];
        if (!known.contains(row.first().toLongLong())) {
            known.insert(row.first().toLongLong());
            m_writer.add(Statements::typeFact(subject, className));
        }
        for (int i = 1; i < row.size(); ++i) {
            const Vocabulary::Property &property = properties.at(i);
            const QVariant value = property.name.isEmpty() ? QVariant() : valueOf(property, row.at(i));
            if (value.isValid())
                m_writer.add(Statements::fact(subject, property.name, value));
        }
    }

    /// The value of a cell; invalid if there is none of the property's type.
    QVariant valueOf(const Vocabulary::Property &property, const QVariant &cell)
    {
        const bool isNumber = cell.userType() == QMetaType::LongLong;
        switch (property.range) {
        case Vocabulary::Text: return cell.userType() == QMetaType::QString ? textOf(cell) : QVariant();
        case Vocabulary::Number: return isNumber ? cell : QVariant();
        case Vocabulary::Truth: return isNumber ? QVariant(cell.toLongLong() != 0) : QVariant();
        case Vocabulary::Resource: return isNumber ? QUrl(nameOf(cell.toLongLong())) : QVariant();
        case Vocabulary::Time: break;
        }
        const QDateTime time = isNumber ? QDateTime::fromSecsSinceEpoch(cell.toLongLong(), Qt::UTC)
                                        : QDateTime::fromString(cell.toString(), Qt::ISODateWithMs);
        return time.isValid() ? QVariant(time) : QVariant();
    }

    /// The store takes no null character.
    static QVariant textOf(const QVariant &cell) { return cell.toString().remove(QChar(0)); }

    StorePrivate &m_target;
    const Vocabulary &m_vocabulary;
    FactWriter m_writer;
    QHash<qlonglong, QString> m_names;
    QHash<QString, QSet<qlonglong>> m_typed; // what was said to be of a class
};

} // namespace

Result<void> copyResources(SqliteFile &file, StorePrivate &target, const StoreDatabase::Progress &progress)
{
    const Result<Vocabulary> vocabulary = readVocabulary(target);
    if (!vocabulary)
        return Failure(vocabulary.error());
    Copy copy(target, *vocabulary);
    readRows(file, namesTable(),
             [&](const QVariantList &row) { copy.addName(row.first().toLongLong(), row.last().toString()); });
    const QVector<Table> tables = tablesOf(file);
    for (int i = 0; i < tables.size(); ++i) {
        if (progress)
            progress(i, int(tables.size()));
        const Result<void> copied = copy.copy(file, tables.at(i));
        if (!copied)
            return copied;
    }
    return {};
}

Result<void> requestWholeReading(StorePrivate &store)
{
    return store.update(Statements::update(Statements::forgetReadings()), attempt);
}

Result<void> adoptMessages(StorePrivate &store)
{
    const char *const adoption = "find messages without a channel";
    return store.number(Statements::countOfStrays(), adoption).and_then([&](int count) -> Result<void> {
        if (count == 0)
            return {};
        FeedChannel channel;
        channel.setTitle(QStringLiteral("Salvaged messages"));
        channel.setLink(store.connection.createUrn().toString());
        const QString uri = store.connection.createUrn().toString();
        return store.update(
            Statements::update(Statements::insertChannel(channel, uri) + Statements::adoptStrays(uri)),
            adoption);
    });
}

Result<SavedContents> countContents(StorePrivate &store)
{
    SavedContents counts;
    const std::pair<int *, QSparqlQuery> questions[] = {
        {&counts.channels, Statements::countOf(Statements::Kind::Channel)},
        {&counts.messages, Statements::countOf(Statements::Kind::Message)},
        {&counts.enclosures, Statements::countOf(Statements::Kind::Enclosure)},
        {&counts.favorites, Statements::countOfFavorites()}};
    for (const auto &[count, question] : questions) {
        const Result<int> number = store.number(question, "count what was saved");
        if (!number)
            return Failure(number.error());
        *count = *number;
    }
    return counts;
}

} // namespace Tidel
