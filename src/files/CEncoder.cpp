// SPDX-License-Identifier: MIT
#include "CEncoder.h"

#include "QtCompat_p.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QtEndian>

namespace {

constexpr char ContainerVersion = 3;
enum ContainerFlag { Compressed = 1, Checksum = 2, Sha1 = 4 };
constexpr int Sha1Size = 20;
// Deflate cannot expand data more than 1032-fold; a zlib block claiming more is corrupt.
constexpr quint64 MaxInflateRatio = 1032;
// The texts this container is made for are short; no decoded text may exceed 16 MiB.
constexpr quint32 MaxDecodedSize = 16u << 20;

enum CipherError { NoError = 0, NoKey = 1, NotCiphertext = 2, IntegrityFailed = 3 };

quint16 checksum(const QByteArray &data)
{
    return VantorCompat::checksumIso3309(data);
}

// qUncompress sizes its first allocation from the length the block claims. The claim is
// checked before anything is allocated: it may neither exceed MaxDecodedSize nor what the
// compressed bytes can back.
bool plausibleClaim(const QByteArray &data)
{
    if (data.size() < 4)
        return false;
    const quint32 claimed = qFromBigEndian<quint32>(data.constData());
    return claimed <= MaxDecodedSize && claimed <= quint64(data.size() - 4) * MaxInflateRatio;
}

// Unlike the rest of the library, this class reports its two warnings ("No key set." and the
// one below) on the Qt warning stream, not through PrintMessage: that is where its callers
// have always looked for them.
void warnNotCiphertext()
{
    qWarning("Invalid version or not a cyphertext.");
}

/// One scrambling or unscrambling run with a key; built afresh by every CEncoder call.
class CEncoderCipher
{
public:
    explicit CEncoderCipher(quint64 key)
        : m_nKey(key)
    {
        for (int i = 0; i < 8; ++i)
            m_KeyBytes.append(char(m_nKey >> (8 * i)));
    }

    QByteArray Scramble(QByteArray data)
    {
        if (m_KeyBytes.isEmpty()) {
            qWarning("No key set.");
            m_nLastError = NoKey;
            return QByteArray();
        }
        char flags = 0;
        if (m_nCompressionMode == 0 || m_nCompressionMode == 1) {
            const QByteArray packed = qCompress(data, 9);
            if (m_nCompressionMode == 1 || packed.size() < data.size()) {
                data = packed;
                flags |= Compressed;
            }
        }
        if (m_nProtectionMode == 1) {
            char sum[2];
            qToBigEndian(checksum(data), sum);
            data.prepend(sum, 2);
            flags |= Checksum;
        } else if (m_nProtectionMode == 2) {
            data.prepend(QCryptographicHash::hash(data, QCryptographicHash::Sha1));
            flags |= Sha1;
        }
        data.prepend(char(QRandomGenerator::global()->bounded(256)));

        char previous = 0;
        for (int i = 0; i < data.size(); ++i) {
            data[i] = char(m_KeyBytes[i % 8] ^ data[i] ^ previous);
            previous = data[i];
        }
        m_nLastError = NoError;
        return QByteArray(1, ContainerVersion) + QByteArray(1, flags) + data;
    }

    QByteArray Unscramble(const QByteArray &container)
    {
        if (m_KeyBytes.isEmpty()) {
            qWarning("No key set.");
            m_nLastError = NoKey;
            return QByteArray();
        }
        if (container.size() < 3)
            return QByteArray();
        if (container[0] != ContainerVersion)
            return failNotCiphertext();
        const char flags = container[1];
        QByteArray data = container.mid(2);
        char previous = 0;
        for (int i = 0; i < data.size(); ++i) {
            const char scrambled = data[i];
            data[i] = char(m_KeyBytes[i % 8] ^ scrambled ^ previous);
            previous = scrambled;
        }
        data.remove(0, 1); // the random byte

        if (flags & Checksum) {
            if (data.size() < 2)
                return failIntegrity();
            const quint16 stored = qFromBigEndian<quint16>(data.constData());
            data.remove(0, 2);
            if (stored != checksum(data))
                return failIntegrity();
        } else if (flags & Sha1) {
            if (data.size() < Sha1Size)
                return failIntegrity();
            const QByteArray stored = data.left(Sha1Size);
            data.remove(0, Sha1Size);
            if (stored != QCryptographicHash::hash(data, QCryptographicHash::Sha1))
                return failIntegrity();
        }
        if (flags & Compressed) {
            if (!plausibleClaim(data))
                return failNotCiphertext();
            data = qUncompress(data);
        }
        m_nLastError = NoError;
        return data;
    }

private:
    QByteArray failNotCiphertext()
    {
        warnNotCiphertext();
        m_nLastError = NotCiphertext;
        return QByteArray();
    }

    QByteArray failIntegrity()
    {
        m_nLastError = IntegrityFailed;
        return QByteArray();
    }

    quint64 m_nKey;
    QByteArray m_KeyBytes;
    int m_nCompressionMode = 0; ///< 0 when it helps, 1 always, other values never
    int m_nProtectionMode = 1;  ///< 0 none, 1 checksum, 2 SHA-1
    int m_nLastError = NoError;
};

} // namespace

CString CEncoder::Encode(CString text, long long key)
{
    CEncoderCipher cipher {quint64(key)};
    return CString(QString::fromLatin1(cipher.Scramble(text.text.toUtf8()).toBase64()));
}

CString CEncoder::Decode(CString text, long long key)
{
    CEncoderCipher cipher {quint64(key)};
    return CString(
        QString::fromUtf8(cipher.Unscramble(QByteArray::fromBase64(text.text.toLatin1()))));
}

CString CEncoder::EncodeSha256(CString text)
{
    if (text.IsEmpty())
        return text;
    const QByteArray digest =
        QCryptographicHash::hash(text.text.toLocal8Bit(), QCryptographicHash::Sha256);
    return CString(QString::fromLatin1(digest.toBase64()));
}
