// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOCUMENTURL_H
#define TIDEL_DOCUMENTURL_H

#include "tidelreaderglobal.h"

#include <QString>
#include <QUrl>

namespace Tidel {

/// The absolute address that a user means by \a argument, a URL or the path of a file. It is empty if the
/// path contains a null character, which no file has in its name.
TIDELREADER_EXPORT QUrl documentUrl(const QString &argument);

/// Returns true if a feed can be at \a address: in a file, or at an http or https address of a server;
/// otherwise returns false.
TIDELREADER_EXPORT bool isDocumentUrl(const QUrl &address);

} // namespace Tidel

#endif
