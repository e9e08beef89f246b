// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDARGUMENT_H
#define FEEDARGUMENT_H

#include "tidelglobal.h"

#include <QByteArray>
#include <QGenericArgument>
#include <QMetaType>

QT_FORWARD_DECLARE_CLASS(QDataStream)

/**
 * One argument of a FeedMethod: the name of a meta type, and a value of that type as bytes.
 *
 * \code
 * FeedArgument address = FeedArgument::fromValue(QUrl("https://example.org/feed.xml"));
 * \endcode
 *
 * The stream operator of the type writes the bytes in the default version of QDataStream. So both sides must
 * know the type and run the same version of Qt. The bytes are not checked before the stream operator reads
 * them: accept arguments only from a sender that you trust to run code in this process.
 *
 * The value belongs to one argument and is never copied: a copy has no value, and assignment leaves the value
 * as it is. The next call of toGenericArgument() reads it from the bytes.
 */
class TIDEL_EXPORT FeedArgument
{
public:
    /// Creates an invalid argument, which has no type, bytes and value.
    FeedArgument();
    /// Creates an argument from \a value, whose meta type has the id \a type. QVariant::userType() and
    /// QVariant::constData() return such a pair. The argument is invalid if there is no such type or if the
    /// type has no stream operators.
    FeedArgument(int type, const void *value);
    /// Creates a copy of the type name and the bytes of \a other, without a value.
    FeedArgument(const FeedArgument &other);
    /// Copies the type name and the bytes of \a other.
    FeedArgument &operator=(const FeedArgument &other);
    /// Destroys the value if there is one.
    ~FeedArgument();

    /**
     * Returns an argument with a copy of \a source; an invalid one if the type has no stream operators. With
     * Qt 5, register the operators of your own types with qRegisterMetaTypeStreamOperators().
     *
     * Qt finds methods by the type names of their parameters. If a parameter is declared with a typedef of
     * your own type, register the name of the typedef too and set \ref typeName to it.
     */
    template <typename T> static FeedArgument fromValue(const T &source)
    {
        return FeedArgument(qMetaTypeId<T>(), &source);
    }

    /// Returns true if the type name is not empty, even if the type is unknown; otherwise returns false.
    bool isValid() const;

    /**
     * Reads the value from the bytes, again in each call, and returns it for QMetaObject::invokeMethod(). The
     * result points into this object: it is valid until this object is changed or destroyed.
     *
     * An invalid argument returns an empty result. An unknown type, or a type without values, returns a
     * result with a null pointer, which must not be passed to an invocation.
     */
    QGenericArgument toGenericArgument();

    /// The name of the meta type; empty if the argument is invalid.
    QByteArray typeName;
    /// The value as QMetaType::save() writes it.
    QByteArray data;
    /// The value; null until toGenericArgument() is called. It belongs to this object. Do not change or
    /// delete it.
    // contract: a public member. Hosts are built against it.
    void *value = nullptr;

private:
    void makeValue(int type);
    void destroyValue();

    int m_valueType = QMetaType::UnknownType; ///< the type of the value, even if typeName has changed since
};

/// Writes the type name and the bytes, each as a QByteArray.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedArgument &argument);
/// Reads the type name and the bytes. The value does not change until toGenericArgument() is called.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedArgument &argument);

#endif
