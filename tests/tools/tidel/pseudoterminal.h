// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PSEUDOTERMINAL_H
#define PSEUDOTERMINAL_H

#include <QByteArray>
#include <QString>

#include <poll.h>
#include <pty.h>
#include <unistd.h>

/// A terminal for programs.
class PseudoTerminal
{
public:
    /// Its size is unknown to programs if \a lines and \a columns are 0.
    explicit PseudoTerminal(ushort lines = 24, ushort columns = 200)
    {
        const winsize size = {lines, columns, 0, 0};
        if (openpty(&m_screen, &m_program, nullptr, nullptr, &size) == 0)
            m_name = QString::fromLatin1(ttyname(m_program));
    }
    ~PseudoTerminal()
    {
        closeProgramSide();
        if (m_screen != -1)
            close(m_screen);
    }
    Q_DISABLE_COPY(PseudoTerminal)

    /// The path of the file that programs open; empty if there is no terminal.
    QString name() const { return m_name; }

    /// Enters \a text as a keyboard does.
    bool enter(const QByteArray &text)
    {
        return write(m_screen, text.constData(), size_t(text.size())) == text.size();
    }

    /// Returns what programs write until the last one of them has closed the terminal, or until one was
    /// silent for a minute. They must have been started.
    QByteArray readAll()
    {
        closeProgramSide();
        QByteArray shown;
        char some[4096];
        pollfd screen = {m_screen, POLLIN, 0};
        ssize_t count = 0;
        // One call returns only what has arrived at the screen by then.
        while (poll(&screen, 1, 60000) > 0 && (count = read(m_screen, some, sizeof some)) > 0)
            shown.append(some, int(count));
        return shown;
    }

private:
    void closeProgramSide()
    {
        if (m_program != -1)
            close(m_program);
        m_program = -1;
    }

    int m_screen = -1;
    int m_program = -1;
    QString m_name;
};

#endif
