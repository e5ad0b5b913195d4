// SPDX-License-Identifier: MIT
#include "QtCompat_p.h"

#include <QSqlField>
#include <QSqlRecord>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QIODevice>
#include <QPointer>
#include <QStringDecoder>
#include <QTextCodec>

#include <cstring>
#include <memory>
#endif

namespace VantorCompat {

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)

namespace {

/**
 * Sits between a UTF-8 QTextStream and the stream's real device: reads decode the device's
 * bytes from the codec into UTF-8, writes encode the stream's UTF-8 into the codec. Sequential
 * and unbuffered; the real device keeps its own mode (a Text-mode file still turns CR LF into
 * LF before the bytes get here).
 */
class CodecDevice final : public QIODevice
{
public:
    CodecDevice(QIODevice *target, QTextCodec *codec)
        : m_target(target)
        , m_codec(codec)
        , m_fromStream(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom)
        , m_encoder(codec->makeEncoder())
    {
        // Both ways, whatever the real device's mode is now: it may be opened after the stream
        // was made, and a read or write it refuses fails there, as it did on Qt 5.
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }

    QIODevice *target() const { return m_target; }

    bool isSequential() const override { return true; }

    bool atEnd() const override { return m_decoded.isEmpty() && (!m_target || m_target->atEnd()); }

    qint64 bytesAvailable() const override
    {
        return m_decoded.size() + (m_target ? m_target->bytesAvailable() : 0);
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        while (m_decoded.isEmpty()) {
            if (!m_target)
                return -1;
            const QByteArray raw = m_target->read(16 * 1024);
            if (raw.isEmpty())
                return m_target->atEnd() ? -1 : 0;
            if (!m_decoder) {
                // As Qt 5's stream did: a byte order mark at the start wins over the codec.
                m_decoder.reset(QTextCodec::codecForUtfText(raw, m_codec)->makeDecoder());
            }
            m_decoded = m_decoder->toUnicode(raw.constData(), int(raw.size())).toUtf8();
        }
        const qint64 n = qMin<qint64>(maxSize, m_decoded.size());
        std::memcpy(data, m_decoded.constData(), size_t(n));
        m_decoded.remove(0, n);
        return n;
    }

    qint64 writeData(const char *data, qint64 size) override
    {
        if (!m_target)
            return -1;
        const QString text = m_fromStream.decode(QByteArrayView(data, size));
        const QByteArray bytes = m_encoder->fromUnicode(text);
        if (!bytes.isEmpty() && m_target->write(bytes) != bytes.size())
            return -1;
        return size;
    }

private:
    QPointer<QIODevice> m_target;
    QTextCodec *m_codec;
    QStringDecoder m_fromStream;
    std::unique_ptr<QTextEncoder> m_encoder;
    std::unique_ptr<QTextDecoder> m_decoder;
    QByteArray m_decoded; // UTF-8 not yet handed to the stream
};

} // namespace

void setCodec(QTextStream &stream, QTextCodec *codec)
{
    if (!codec || !stream.device())
        return;
    stream.setDevice(new CodecDevice(stream.device(), codec));
}

void releaseCodec(QTextStream &stream)
{
    auto *proxy = dynamic_cast<CodecDevice *>(stream.device());
    if (!proxy)
        return;
    stream.setDevice(nullptr); // flushes into the proxy, which writes through at once
    delete proxy;
}

int sqlColumnType(const QSqlRecord &record, int column)
{
    return record.field(column).metaType().id();
}

QVariant sqlValue(const QVariant &value, int columnType)
{
    const int type = columnType == QMetaType::Float ? int(QMetaType::Double) : columnType;
    if (!value.isValid())
        return type == QMetaType::UnknownType ? value : QVariant(QMetaType(type));
    if (columnType == QMetaType::Float && value.typeId() != QMetaType::Double)
        return value.isNull() ? QVariant(QMetaType(QMetaType::Double)) : QVariant(value.toDouble());
    return value;
}

#else

void setCodec(QTextStream &stream, QTextCodec *codec)
{
    if (codec)
        stream.setCodec(codec);
}

void releaseCodec(QTextStream &) { }

int sqlColumnType(const QSqlRecord &, int)
{
    return 0;
}

QVariant sqlValue(const QVariant &value, int)
{
    return value;
}

#endif

} // namespace VantorCompat
