// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugincall.h"

#include <QMetaObject>
#include <QObject>

namespace Tidel {

bool invoke(QObject &object, FeedMethod call)
{
    const QList<QGenericArgument> given = call.genericArguments();
    const auto argument = [&](int i) { return given.value(i); };
    return given.size() <= 10
        && QMetaObject::invokeMethod(&object, call.name.constData(), Qt::DirectConnection, argument(0),
                                     argument(1), argument(2), argument(3), argument(4), argument(5),
                                     argument(6), argument(7), argument(8), argument(9));
}

} // namespace Tidel
