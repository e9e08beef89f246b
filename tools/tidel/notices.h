// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_NOTICES_H
#define TIDEL_NOTICES_H

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QString)

namespace Tidel {

/// A message handler that shows what the libraries tell the user, for example for whom they wait. Drops all
/// other messages.
void showNotice(QtMsgType type, const QMessageLogContext &context, const QString &text);

} // namespace Tidel

#endif
