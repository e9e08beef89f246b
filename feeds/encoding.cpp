// SPDX-License-Identifier: LGPL-2.1-or-later
#include "encoding.h"

namespace Tidel {

DecodedText toUtf8(const QByteArray &document, const QByteArray &) { return {document, {}}; }

} // namespace Tidel
