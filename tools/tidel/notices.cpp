// SPDX-License-Identifier: LGPL-2.1-or-later
#include "notices.h"

#include "output.h"

namespace Tidel {

void showNotice(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    // Traces have other categories.
    const bool isForUser =
        (type == QtInfoMsg || type == QtWarningMsg) && qstrncmp(context.category, "tidel.", 6) == 0;
    if (isForUser)
        Output(stdout, stderr).note(QLatin1String("tidel: ") + text);
}

} // namespace Tidel
