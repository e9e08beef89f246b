// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef COUNTEDVALUE_H
#define COUNTEDVALUE_H

#include <messagelog.h>

#include <QDataStream>
#include <QMetaType>

#include <set>

/// A value that keeps a list of all living values, so that tests notice a wrong destruction.
struct CountedValue
{
    CountedValue() { living.insert(this); }
    CountedValue(const CountedValue &other) : number(other.number) { living.insert(this); }
    CountedValue &operator=(const CountedValue &) = default;
    ~CountedValue() { wronglyDestroyed += living.erase(this) == 1 ? 0 : 1; }

    int number = 0;

    static inline std::set<const void *> living;
    static inline int wronglyDestroyed = 0;
    static inline int loads = 0;
};
Q_DECLARE_METATYPE(CountedValue)

inline QDataStream &operator<<(QDataStream &stream, const CountedValue &value)
{
    return stream << value.number;
}

inline QDataStream &operator>>(QDataStream &stream, CountedValue &value)
{
    ++CountedValue::loads;
    return stream >> value.number;
}

inline void registerCountedValue()
{
    qRegisterMetaType<CountedValue>("CountedValue");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    qRegisterMetaTypeStreamOperators<CountedValue>("CountedValue");
#endif
}

/// Returns the messages since the last call. Messages that are not debug messages are marked.
inline QStringList takeTexts(MessageLog &log)
{
    QStringList texts;
    for (const LoggedMessage &message : log.take())
        texts.append((message.type == QtDebugMsg ? "" : "not for debugging: ") + message.text);
    return texts;
}

inline const QString Creating("creating void data");
inline const QString Destroying("destroy void data");

#endif
