// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ROWMIRROR_H
#define ROWMIRROR_H

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QStringList>

#include <functional>

/**
 * What a view shows that asks a list for data only when it is told to. The model is under
 * QAbstractItemModelTester, too.
 */
class RowMirror : public QObject
{
    Q_OBJECT

public:
    /// Shows \a line of each row of \a model.
    RowMirror(QAbstractItemModel *model, const std::function<QString(const QModelIndex &)> &line)
        : m_model(model), m_line(line),
          m_tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        connect(model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) {
                    ++m_changes;
                    for (int row = first; row <= last; ++row)
                        m_rows.insert(row, lineOf(row));
                });
        connect(model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) {
                    ++m_changes;
                    m_rows.erase(m_rows.begin() + first, m_rows.begin() + last + 1);
                });
        connect(model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last) {
                    for (int row = first.row(); row <= last.row(); ++row)
                        m_rows[row] = lineOf(row);
                });
        const auto reload = [this] {
            ++m_resets;
            m_rows.clear();
            for (int row = 0; row < m_model->rowCount(); ++row)
                m_rows.append(lineOf(row));
        };
        connect(model, &QAbstractItemModel::modelReset, this, reload);
        connect(model, &QAbstractItemModel::layoutChanged, this, reload);
    }

    QStringList rows() const { return m_rows; }
    /// How often rows came or went.
    int changes() const { return m_changes; }
    /// How often the model said that all has changed.
    int resets() const { return m_resets; }

private:
    QString lineOf(int row) const { return m_line(m_model->index(row, 0)); }

    QAbstractItemModel *const m_model;
    const std::function<QString(const QModelIndex &)> m_line;
    QAbstractItemModelTester m_tester;
    QStringList m_rows;
    int m_changes = 0;
    int m_resets = 0;
};

#endif
