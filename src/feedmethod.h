// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDMETHOD_H
#define FEEDMETHOD_H

#include "feedargument.h"

#include <QList>

/**
 * A call of a method by its name, that can travel as bytes and be invoked where it arrives.
 *
 * \code
 * FeedMethod call;
 * call.name = "subscribe";
 * call.addArgument(FeedArgument::fromValue(QUrl("https://example.org/feed.xml")));
 * socket->write(FeedMethod::toByteArray(call));
 * \endcode
 *
 * On the other side, whose stream may hold anything:
 * \code
 * QDataStream stream(bytes);
 * FeedMethod call;
 * stream >> call;
 * const QList<QGenericArgument> arguments = call.genericArguments();
 * if (stream.status() == QDataStream::Ok && call.name == "subscribe" && arguments.size() == 1)
 *     QMetaObject::invokeMethod(plugin, call.name.constData(), arguments[0]);
 * \endcode
 */
class TIDEL_EXPORT FeedMethod
{
public:
    /// A call without a name and arguments.
    FeedMethod();
    /// A call of the method \a name with a copy of \a arguments, as they are: neither their number nor they
    /// are checked.
    FeedMethod(const QByteArray &name, QList<FeedArgument> &arguments);

    /// How many arguments there are; more than ten only when they were given or read as a whole.
    int argumentCount();
    /// A copy of the argument at \a index, from 0 to argumentCount() - 1; anything else is undefined.
    FeedArgument argument(int index);
    /// Appends \a argument. An invalid one, and one more than ten, is ignored.
    void addArgument(const FeedArgument &argument);

    /// FeedArgument::toGenericArgument() of each argument, in their order. The result is a view of this
    /// object, and holds as long as this object lives and is neither changed nor copied.
    QList<QGenericArgument> genericArguments();

    /// What the stream operator writes for \a method, in QDataStream's own byte order.
    static QByteArray toByteArray(const FeedMethod &method);

    /// The method's name, without parentheses.
    QByteArray name;
    /// Carried along and otherwise unused; empty unless it was read from a stream.
    QByteArray extra;
    /// The arguments.
    QList<FeedArgument> arguments;
};

/// Writes name, extra, the number of arguments as a quint32, and the arguments.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedMethod &method);
/// Reads what was written. The number of arguments is not limited and invalid arguments are kept. Reading
/// stops when the number of the stream is reached, or when the stream is at its end behind an argument; the
/// status is then Ok. A number with nothing behind it gives no arguments and the status ReadPastEnd. Memory
/// is used only for arguments that the stream holds.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedMethod &method);

#endif
