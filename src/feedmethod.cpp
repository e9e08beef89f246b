// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedmethod.h"
#include "streamlist_p.h"

#include <QIODevice>

namespace {

// QMetaObject::invokeMethod() takes no more.
constexpr int MaximumArguments = 10;

} // namespace

FeedMethod::FeedMethod() = default;

FeedMethod::FeedMethod(const QByteArray &methodName, QList<FeedArgument> &methodArguments)
    : name(methodName), arguments(methodArguments)
{
}

int FeedMethod::argumentCount() { return int(arguments.size()); }

FeedArgument FeedMethod::argument(int index) { return arguments[index]; }

void FeedMethod::addArgument(const FeedArgument &argument)
{
    if (argument.isValid() && arguments.size() < MaximumArguments)
        arguments.append(argument);
}

QList<QGenericArgument> FeedMethod::genericArguments()
{
    QList<QGenericArgument> result;
    for (FeedArgument &argument : arguments)
        result.append(argument.toGenericArgument());
    return result;
}

QByteArray FeedMethod::toByteArray(const FeedMethod &method)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << method;
    return bytes;
}

QDataStream &operator<<(QDataStream &stream, const FeedMethod &method)
{
    return stream << method.name << method.extra << method.arguments;
}

QDataStream &operator>>(QDataStream &stream, FeedMethod &method)
{
    return readStreamList(stream >> method.name >> method.extra, method.arguments);
}
