// SPDX-License-Identifier: LGPL-2.1-or-later
#include "question.h"

#include "terminaltext.h"

#include <csignal>
#include <cstdio>

#include <termios.h>
#include <unistd.h>

namespace Tidel {

namespace {

constexpr int longestAnswer = 1024;

/// The line that the user enters; nothing at the end of the input.
std::optional<QString> answer()
{
    char line[longestAnswer];
    if (!fgets(line, sizeof line, stdin))
        return std::nullopt;
    return QString::fromUtf8(line).remove(QLatin1Char('\n'));
}

/// Keeps the terminal from showing what is entered. A signal ends the input, so that the terminal shows
/// again.
class Silence
{
public:
    Silence()
    {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        for (size_t i = 0; i < std::size(caught); ++i)
            sigaction(caught[i], &action, &m_actions[i]);
        tcgetattr(STDIN_FILENO, &m_terminal);
        termios silent = m_terminal;
        silent.c_lflag &= ~tcflag_t(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~Silence()
    {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_terminal);
        for (size_t i = 0; i < std::size(caught); ++i)
            sigaction(caught[i], &m_actions[i], nullptr);
    }
    Q_DISABLE_COPY(Silence)

private:
    static constexpr int caught[] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction m_actions[std::size(caught)];
    termios m_terminal = {};
};

} // namespace

bool canAsk() { return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1; }

std::optional<QString> ask(const QString &question)
{
    fputs(terminalText(question).toUtf8().constData(), stdout);
    fflush(stdout);
    const std::optional<QString> line = answer();
    if (line)
        return line->trimmed();
    fputc('\n', stdout);
    return std::nullopt;
}

std::optional<QString> askSecretly(const QString &question)
{
    if (isatty(STDIN_FILENO) != 1)
        return answer();
    const Silence silence; // Before the question, so that a quick answer is hidden too.
    fputs(terminalText(question).toUtf8().constData(), stderr);
    fflush(stderr);
    const std::optional<QString> line = answer();
    fputc('\n', stderr);
    return line;
}

} // namespace Tidel
