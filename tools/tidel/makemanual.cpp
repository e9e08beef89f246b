// SPDX-License-Identifier: LGPL-2.1-or-later
// Writes the manual page of tidel to the standard output, for the build.
#include "manual.h"

#include <cstdio>

int main()
{
    const QByteArray page = Tidel::manualPage(QStringLiteral(TIDEL_VERSION)).toUtf8();
    return fwrite(page.constData(), 1, size_t(page.size()), stdout) == size_t(page.size()) ? 0 : 1;
}
