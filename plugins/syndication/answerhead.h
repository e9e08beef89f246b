// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ANSWERHEAD_H
#define TIDEL_ANSWERHEAD_H

#include <QByteArray>
#include <QHash>
#include <QString>

namespace Tidel {

/// The status and the headers of the answer of a web server.
class AnswerHead
{
public:
    /// Most lines that servers may send before and after a document. A usual answer has thirty.
    static constexpr int maximumLines = 256;
    /// Most bytes that these lines may have together.
    static constexpr int maximumBytes = 128 * 1024;

    /// Adds \a line. A status begins another answer, whose headers replace those before. Returns false if the
    /// server has sent more than it may.
    bool addLine(const QByteArray &line);

    /// The status, such as 200; 0 if there was none.
    int status() const { return m_status; }
    /// The words after the status, at most 100 characters; may be empty.
    QString phrase() const { return m_phrase; }
    /// The value of the header \a name in small letters. Several values are separated by commas.
    QByteArray header(const QByteArray &name) const { return m_headers.value(name); }
    /// The size of the document in bytes; -1 if the server has not said it.
    qint64 announcedSize() const;

private:
    void beginAnswer(const QByteArray &line);

    int m_lines = 0;
    int m_bytes = 0;
    int m_status = 0;
    QString m_phrase;
    QHash<QByteArray, QByteArray> m_headers;
};

} // namespace Tidel

#endif
