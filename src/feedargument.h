// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDARGUMENT_H
#define FEEDARGUMENT_H

#include "tidelglobal.h"

#include <QByteArray>
#include <QGenericArgument>
#include <QMetaType>

QT_FORWARD_DECLARE_CLASS(QDataStream)

/**
 * One argument of a FeedMethod: the name of a meta type and a value of it as bytes.
 *
 * \code
 * FeedArgument address = FeedArgument::fromValue(QUrl("https://example.org/feed.xml"));
 * \endcode
 *
 * The bytes are what the type's own stream operator writes in the default version of QDataStream, so both
 * sides have to know the type and run the same version of Qt. They are not checked before that operator
 * reads them back: take arguments from nobody who may not run code in this process.
 *
 * Every argument has a value of its own, which is no part of what is copied: a copy starts without one, and
 * an assigned one keeps what it has until toGenericArgument() is next called.
 */
class TIDEL_EXPORT FeedArgument
{
public:
    /// An invalid argument: without type, bytes and value.
    FeedArgument();
    /// A copy of \a value, which is of the meta type with the id \a type, as QVariant has them in userType()
    /// and constData(). The argument is invalid when there is no such type or nothing that writes its values.
    FeedArgument(int type, const void *value);
    /// Copies type name and bytes.
    FeedArgument(const FeedArgument &other);
    /// Copies type name and bytes.
    FeedArgument &operator=(const FeedArgument &other);
    /// Destroys the value, if there is one.
    ~FeedArgument();

    /**
     * A copy of \a source. With Qt 5 a type that is not Qt's own needs qRegisterMetaTypeStreamOperators();
     * without it, as with a type that has no stream operators, the argument is invalid.
     *
     * Methods are found by the type names of their parameters: where one is declared with a typedef of a type
     * that is not Qt's own, register that name too and set \ref typeName to it.
     */
    template <typename T> static FeedArgument fromValue(const T &source)
    {
        return FeedArgument(qMetaTypeId<T>(), &source);
    }

    /// Whether there is a type name, known or not.
    bool isValid() const;

    /**
     * The argument for QMetaObject::invokeMethod(): reads the value from the bytes, again in each call. It
     * is a view of this object and holds as long as this object lives and is not changed. An invalid argument
     * gives an empty one; an unknown type, or one that has no values, gives one with a null pointer, which
     * must not be used for an invocation.
     */
    QGenericArgument toGenericArgument();

    /// Name of the meta type; empty when the argument is invalid.
    QByteArray typeName;
    /// The value as QMetaType::save() writes it.
    QByteArray data;
    /// The value itself, made by the first toGenericArgument() and null until then. It belongs to this
    /// object, and is only to be looked at.
    void *value = nullptr;

private:
    void makeValue(int type);
    void destroyValue();

    int m_valueType = QMetaType::UnknownType; ///< what value was made as, whatever typeName says since
};

/// Writes type name and bytes, each as a QByteArray.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedArgument &argument);
/// Reads type name and bytes. The value is left as it was; the next toGenericArgument() sees to it, whatever
/// its type was.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedArgument &argument);

#endif
