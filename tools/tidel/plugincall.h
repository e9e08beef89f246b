// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PLUGINCALL_H
#define TIDEL_PLUGINCALL_H

#include <feedmethod.h>

QT_FORWARD_DECLARE_CLASS(QObject)

namespace Tidel {

/// The call of the method \a name with \a arguments.
template <typename... Arguments> FeedMethod methodCall(const char *name, const Arguments &...arguments)
{
    FeedMethod call;
    call.name = name;
    (call.addArgument(FeedArgument::fromValue(arguments)), ...);
    return call;
}

/// Calls the invokable method of \a object that \a call names; false when it has no such method.
bool invoke(QObject &object, FeedMethod call);

} // namespace Tidel

#endif
