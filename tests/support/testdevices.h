// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TESTDEVICES_H
#define TESTDEVICES_H

#include <QByteArray>
#include <QIODevice>

#include <algorithm>

/// A sequential device, such as a pipe, which holds all of its bytes from the start.
class SequentialDevice : public QIODevice
{
public:
    explicit SequentialDevice(const QByteArray &bytes) : m_bytes(bytes) { open(ReadOnly); }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bytes.size() + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const int size = int(std::min<qint64>(maximum, m_bytes.size()));
        std::copy_n(m_bytes.constData(), size, data);
        m_bytes.remove(0, size);
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
};

/// A device that fails behind its first bytes, such as a file on a broken disk. It is never at its end.
class FailingDevice : public QIODevice
{
public:
    explicit FailingDevice(const QByteArray &bytes) : m_bytes(bytes) { open(ReadOnly | Unbuffered); }

    qint64 size() const override { return m_bytes.size() + 1000; }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const QByteArray read = m_bytes.mid(int(pos()), int(maximum));
        std::copy(read.cbegin(), read.cend(), data);
        return read.isEmpty() && maximum > 0 ? -1 : read.size();
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
};

#endif
