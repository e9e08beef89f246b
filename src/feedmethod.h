// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDMETHOD_H
#define FEEDMETHOD_H

#include "feedargument.h"

#include <QList>

/**
 * A call of a method by its name. It is sent to another process as bytes and invoked there.
 *
 * \code
 * FeedMethod call;
 * call.name = "subscribe";
 * call.addArgument(FeedArgument::fromValue(QUrl("https://example.org/feed.xml")));
 * socket->write(FeedMethod::toByteArray(call));
 * \endcode
 *
 * The receiver checks what it has read, because the bytes may come from a faulty or hostile sender:
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
    /// Creates a call without a name and arguments.
    FeedMethod();
    /// Creates a call of the method \a name with a copy of \a arguments. Neither the arguments nor their
    /// number are checked.
    // contract: takes a reference that is not const. Hosts are built against this signature.
    FeedMethod(const QByteArray &name, QList<FeedArgument> &arguments);

    /// Returns the number of arguments. It exceeds ten only if the caller or a stream gave the list as a
    /// whole.
    // contract: this and the other accessors are not const members. Hosts are built against these signatures.
    int argumentCount();
    /// Returns a copy of the argument at \a index, which must be from 0 to argumentCount() - 1.
    FeedArgument argument(int index);
    /// Appends \a argument. Ignores an invalid argument, and every argument if the call already has ten.
    void addArgument(const FeedArgument &argument);

    /// Returns FeedArgument::toGenericArgument() of each argument in order. The result points into this
    /// object: it is valid until this object is changed, copied or destroyed.
    QList<QGenericArgument> genericArguments();

    /// Returns the bytes that the stream operator writes for \a method in QDataStream's default byte order.
    static QByteArray toByteArray(const FeedMethod &method);

    /// The name of the method, without parentheses; empty if none is set.
    QByteArray name;
    /// Unused bytes that are read and written with the call; empty unless a stream contained them.
    // contract: stays in the class and in the stream. Other programs read and write this field.
    QByteArray extra;
    /// The arguments in the order of the method's parameters.
    QList<FeedArgument> arguments;
};

/// Writes the name, the extra bytes, the number of arguments as a quint32, and the arguments.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedMethod &method);
/// Reads a call that was written. The number of arguments is not limited and invalid arguments are kept.
/// Reading stops when the number of the stream is reached, or when the stream is at its end behind an
/// argument. The status is Ok if every argument that was read is complete. A number with nothing behind it
/// gives no arguments and the status ReadPastEnd. Memory is used only for arguments that the stream holds.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedMethod &method);

#endif
