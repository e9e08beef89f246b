// SPDX-License-Identifier: LGPL-2.1-or-later
#include "turtlestream_p.h"

#include <QFile>
#include <QIODevice>
#include <QtEndian>

#include <array>

namespace {

/// Waits for the answer of one asynchronous function, in an event loop of its own: the host's is not needed.
class Waiter
{
public:
    Waiter() : m_context(g_main_context_new()) { g_main_context_push_thread_default(m_context); }
    ~Waiter()
    {
        g_main_context_pop_thread_default(m_context);
        g_main_context_unref(m_context);
    }
    Q_DISABLE_COPY(Waiter)

    /// Takes the answer. The data of the asynchronous function is the waiter.
    static void take(GObject *, GAsyncResult *answer, gpointer waiter)
    {
        static_cast<Waiter *>(waiter)->m_answer.reset(static_cast<GAsyncResult *>(g_object_ref(answer)));
    }

    GAsyncResult *answer()
    {
        while (!m_answer)
            g_main_context_iteration(m_context, TRUE);
        return m_answer.get();
    }

private:
    GMainContext *m_context;
    GObjectPtr<GAsyncResult> m_answer;
};

GObjectPtr<GInputStream> converted(GInputStream *stream, gpointer converter)
{
    const GObjectPtr<GConverter> owner(static_cast<GConverter *>(converter));
    return GObjectPtr<GInputStream>(g_converter_input_stream_new(stream, owner.get()));
}

bool copy(GInputStream *from, QIODevice *to, GError **error)
{
    std::array<char, 65536> bytes;
    for (;;) {
        const gssize count = g_input_stream_read(from, bytes.data(), bytes.size(), nullptr, error);
        if (count <= 0)
            return count == 0;
        if (to->write(bytes.data(), count) != count) {
            g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_FAILED, to->errorString().toUtf8().constData());
            return false;
        }
    }
}

bool isCompressed(QFile &file) { return file.seek(0) && file.read(2) == QByteArrayLiteral("\x1f\x8b"); }

} // namespace

qint64 sizeOfTurtle(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    constexpr int sizeField = sizeof(quint32);
    if (!isCompressed(file) || file.size() < sizeField || !file.seek(file.size() - sizeField))
        return file.size();
    // The last bytes of a gzip file. They are too small for texts above 4 GiB, and wrong if the file was cut.
    const QByteArray size = file.read(sizeField);
    constexpr qint64 largestRatio = 1032;
    return qMin<qint64>(qFromLittleEndian<quint32>(size.constData()), largestRatio * file.size());
}

bool writeTurtle(TrackerSparqlConnection *connection, const QByteArray &description, QIODevice *device,
                 GError **error)
{
    Waiter waiter;
    tracker_sparql_connection_serialize_async(connection, TRACKER_SERIALIZE_FLAGS_NONE,
                                              TRACKER_RDF_FORMAT_TURTLE, description.constData(), nullptr,
                                              Waiter::take, &waiter);
    const GObjectPtr<GInputStream> turtle(
        tracker_sparql_connection_serialize_finish(connection, waiter.answer(), error));
    if (!turtle)
        return false;
    const auto compressed = converted(turtle.get(), g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, -1));
    return copy(compressed.get(), device, error);
}

bool readTurtle(TrackerSparqlConnection *connection, const QString &fileName, GError **error)
{
    const GObjectPtr<GFile> file(g_file_new_for_path(QFile::encodeName(fileName).constData()));
    GObjectPtr<GInputStream> turtle(G_INPUT_STREAM(g_file_read(file.get(), nullptr, error)));
    if (!turtle)
        return false;
    QFile beginning(fileName);
    if (beginning.open(QIODevice::ReadOnly) && isCompressed(beginning))
        turtle = converted(turtle.get(), g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP));
    Waiter waiter;
    tracker_sparql_connection_deserialize_async(connection, TRACKER_DESERIALIZE_FLAGS_NONE,
                                                TRACKER_RDF_FORMAT_TURTLE, nullptr, turtle.get(), nullptr,
                                                Waiter::take, &waiter);
    return tracker_sparql_connection_deserialize_finish(connection, waiter.answer(), error);
}
