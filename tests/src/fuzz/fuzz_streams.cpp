// SPDX-License-Identifier: LGPL-2.1-or-later
// Reads any bytes as the values that travel in streams, writes them, and reads them again.
#include <fuzzing.h>

#include <feedchannel.h>
#include <feedmethod.h>

#include <QDataStream>
#include <QDebug>
#include <QIODevice>

namespace {

struct Form
{
    int version;
    QDataStream::ByteOrder byteOrder;
};

template <typename T> QDataStream::Status readFrom(const QByteArray &bytes, T &value, const Form &form)
{
    QDataStream stream(bytes);
    stream.setVersion(form.version);
    stream.setByteOrder(form.byteOrder);
    stream >> value;
    return stream.status();
}

template <typename T> QByteArray written(const T &value, const Form &form)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(form.version);
    stream.setByteOrder(form.byteOrder);
    stream << value;
    return bytes;
}

template <typename T> T readBack(const T &value, const Form &form)
{
    T result;
    require(readFrom(written(value, form), result, form) == QDataStream::Ok, "what was written can be read");
    return result;
}

template <typename T> T check(const QByteArray &bytes, const Form &form)
{
    T value;
    readFrom(bytes, value, form);
    // Qt reads an invalid time with the offset zero as one in UTC.
    const T again = readBack(value, form);
    require(written(readBack(again, form), form) == written(again, form), "what was written comes back");
    return value;
}

template <typename T> void checkWithText(const QByteArray &bytes, const Form &form)
{
    QString text;
    QDebug(&text) << check<T>(bytes, form);
    require(!text.isEmpty(), "a value has a debug text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    for (const int version : {int(QDataStream::Qt_4_8), int(QDataStream::Qt_DefaultCompiledVersion)}) {
        for (const QDataStream::ByteOrder order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            const Form form{version, order};
            checkWithText<FeedEnclosure>(bytes, form);
            checkWithText<FeedMessage>(bytes, form);
            checkWithText<FeedChannel>(bytes, form);
            check<QList<FeedEnclosure>>(bytes, form);
            check<QList<FeedMessage>>(bytes, form);
            check<FeedArgument>(bytes, form);
            check<FeedMethod>(bytes, form);
        }
    }
    return 0;
}
