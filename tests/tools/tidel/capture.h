// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef CAPTURE_H
#define CAPTURE_H

#include <output.h>

#include <QString>

#include <cstdio>
#include <cstdlib>

/// Captures the output of a command.
class Capture
{
public:
    Capture() : m_out(open_memstream(&m_outText, &m_outSize)), m_err(open_memstream(&m_errText, &m_errSize))
    {
    }
    ~Capture()
    {
        fclose(m_out);
        fclose(m_err);
        free(m_outText);
        free(m_errText);
    }
    Q_DISABLE_COPY(Capture)

    /// An output that is captured.
    Tidel::Output output() { return Tidel::Output(m_out, m_err); }
    /// The captured results.
    QString out() { return text(m_out, m_outText); }
    /// The captured notes and errors.
    QString err() { return text(m_err, m_errText); }

private:
    static QString text(FILE *stream, char *const &buffer)
    {
        fflush(stream);
        return QString::fromUtf8(buffer);
    }

    char *m_outText = nullptr;
    char *m_errText = nullptr;
    size_t m_outSize = 0;
    size_t m_errSize = 0;
    FILE *m_out;
    FILE *m_err;
};

#endif
