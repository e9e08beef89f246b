// SPDX-License-Identifier: LGPL-2.1-or-later
#include "question.h"

#include "terminaltext.h"

#include <cstdio>

#include <unistd.h>

namespace Tidel {

bool canAsk() { return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1; }

std::optional<QString> ask(const QString &question)
{
    fputs(terminalText(question).toUtf8().constData(), stdout);
    fflush(stdout);
    char answer[1024];
    if (fgets(answer, sizeof answer, stdin))
        return QString::fromUtf8(answer).trimmed();
    fputc('\n', stdout);
    return std::nullopt;
}

} // namespace Tidel
