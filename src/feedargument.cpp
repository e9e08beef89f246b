// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedargument.h"

#include <QDataStream>
#include <QDebug>
#include <QIODevice>

namespace {

// Qt 6 offers these functions as members of QMetaType, Qt 5 as static functions of type ids.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
int typeOfName(const QByteArray &name) { return QMetaType::type(name); }
bool save(QDataStream &stream, int type, const void *value) { return QMetaType::save(stream, type, value); }
void load(QDataStream &stream, int type, void *value) { QMetaType::load(stream, type, value); }
#else
int typeOfName(const QByteArray &name) { return QMetaType::fromName(name).id(); }
bool save(QDataStream &stream, int type, const void *value) { return QMetaType(type).save(stream, value); }
void load(QDataStream &stream, int type, void *value) { QMetaType(type).load(stream, value); }
#endif

} // namespace

FeedArgument::FeedArgument() = default;

FeedArgument::FeedArgument(int type, const void *source)
{
    QDataStream stream(&data, QIODevice::WriteOnly);
    if (source && QMetaType::isRegistered(type) && save(stream, type, source))
        typeName = QMetaType(type).name();
}

FeedArgument::FeedArgument(const FeedArgument &other) : typeName(other.typeName), data(other.data) { }

// The value is not copied, and QByteArray handles self-assignment.
// cppcheck-suppress operatorEqVarError
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
FeedArgument &FeedArgument::operator=(const FeedArgument &other)
{
    typeName = other.typeName;
    data = other.data;
    return *this;
}

FeedArgument::~FeedArgument() { destroyValue(); }

bool FeedArgument::isValid() const { return !typeName.isEmpty(); }

QGenericArgument FeedArgument::toGenericArgument()
{
    if (!isValid())
        return QGenericArgument();

    const int type = typeOfName(typeName);
    if (type != m_valueType)
        destroyValue();
    if (!value)
        makeValue(type);
    if (value) {
        QDataStream stream(data);
        load(stream, type, value);
    }
    return QGenericArgument(typeName.constData(), value);
}

void FeedArgument::makeValue(int type)
{
    qDebug("creating void data"); // contract: the text and its level. Log readers know them.
    m_valueType = type;
    const QMetaType metaType(type);
    // Qt 5 leaks memory when it creates a value of a type that has no values.
    if (metaType.sizeOf() > 0)
        value = metaType.create();
}

void FeedArgument::destroyValue()
{
    if (!value)
        return;
    QMetaType(m_valueType).destroy(value);
    value = nullptr;
    qDebug("destroy void data"); // contract: the text and its level. Log readers know them.
}

QDataStream &operator<<(QDataStream &stream, const FeedArgument &argument)
{
    return stream << argument.typeName << argument.data;
}

QDataStream &operator>>(QDataStream &stream, FeedArgument &argument)
{
    return stream >> argument.typeName >> argument.data;
}
