// SPDX-License-Identifier: MIT
// CEncoder and PasswordChecker.
#include <CEncoder.h>
#include <PasswordChecker.h>
#include <QtCompat_p.h>

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

namespace {

const quint64 Key = 0x0123456789ABCDEFULL;

// Builds a container as its format describes, with a chosen "random" byte, so that every
// result below is the same on every run.
QByteArray container(int flags, const QByteArray &payload, quint64 key = Key)
{
    QByteArray body = QByteArray(1, 0x5A) + payload;
    for (int i = 0; i < body.size(); ++i) // chained XOR with the key's bytes, lowest first
        body[i] =
            char(quint8(key >> (8 * (i % 8))) ^ quint8(body[i]) ^ quint8(i ? body[i - 1] : 0));
    return QByteArray(1, 3) + QByteArray(1, char(flags)) + body;
}

QByteArray checksumBE(const QByteArray &data)
{
    QByteArray sum(2, '\0');
    qToBigEndian(VantorCompat::checksumIso3309(data), sum.data());
    return sum;
}

const auto sha1 = [](const QByteArray &data) {
    return QCryptographicHash::hash(data, QCryptographicHash::Sha1);
};
// Valid containers and their text: plain with checksum, compressed with checksum, SHA-1, and
// compressed unprotected (last, as the one a changed byte may slip through).
QVector<QPair<QByteArray, QByteArray>> validContainers()
{
    const QByteArray text("user=admin;pw=Tr0ub4dor&3"), longText = text.repeated(40);
    const QByteArray packed = qCompress(longText, 9);
    return {{container(2, checksumBE(text) + text), text},
            {container(3, checksumBE(packed) + packed), longText},
            {container(4, sha1(text) + text), text},
            {container(1, packed), longText}};
}

const auto decode = [](const QByteArray &container) {
    return CEncoder::Decode(CString(QString::fromLatin1(container.toBase64())), Key).text;
};

// Silences every message while it lives.
struct Quiet
{
    Quiet() { previous = qInstallMessageHandler(&Quiet::handler); }
    ~Quiet() { qInstallMessageHandler(previous); }
    static void handler(QtMsgType, const QMessageLogContext &, const QString &) { }
    QtMessageHandler previous;
};

} // namespace

class tst_Encoder : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qlonglong>("key");
        QTest::addColumn<int>("flags"); // -1: either
        QString binaryLooking;
        for (ushort c = 1; c < 0x300; c += 7)
            binaryLooking.append(QChar(c));
        QTest::newRow("empty") << QString() << qlonglong(Key) << 2;
        QTest::newRow("short") << QStringLiteral("hello") << qlonglong(Key) << 2;
        QTest::newRow("korean, key -1") << QStringLiteral("수온 12.5°C") << -1LL << 2;
        QTest::newRow("long repetitive: compressed")
            << QStringLiteral("PLC1,192.168.0.10,502;").repeated(200) << qlonglong(Key) << 3;
        QTest::newRow("binary-looking") << binaryLooking << qlonglong(Key) << -1;
    }

    void roundTrip()
    {
        QFETCH(QString, text);
        QFETCH(qlonglong, key);
        QFETCH(int, flags);
        QSet<QString> encodings; // the random byte makes encodings of the same text differ
        for (int i = 0; i < 16; ++i)
            encodings << CEncoder::Encode(CString(text), key).text;
        QVERIFY(encodings.size() > 1);
        const CString encoded(*encodings.begin());
        const QByteArray raw = QByteArray::fromBase64(encoded.text.toLatin1());
        QCOMPARE(int(raw[0]), 3);
        if (flags >= 0)
            QCOMPARE(int(raw[1]), flags);
        if (text.isEmpty())
            QCOMPARE(raw.size(), 5);
        QCOMPARE(CEncoder::Decode(encoded, key).text, text);
    }

    void handBuiltContainers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("warns"); // "not a cyphertext"
        const QByteArray hello("hello"), sum = checksumBE(hello);
        QByteArray lyingSize = qCompress(QByteArray("abc123").repeated(500), 9);
        qToBigEndian(quint32(8u << 20), lyingSize.data()); // 8 MiB from a few dozen bytes
        auto row = [](const char *name, const QByteArray &container, const QString &expected,
                      bool warns = false) {
            QTest::newRow(name) << QString::fromLatin1(container.toBase64()) << expected << warns;
        };
        row("checksum little-endian", container(2, sum.right(1) + sum.left(1) + hello), QString());
        row("other key", container(2, sum + hello, 0x1122334455667788ULL), QString());
        row("checksum cut short", container(2, "x"), QString());
        row("sha1 cut short", container(4, sha1(hello).left(19)), QString());
        row("unprotected", container(0, hello), "hello");
        // Refused before anything is allocated, with the container warning.
        row("compressed, claim beyond deflate's ratio", container(1, lyingSize), QString(), true);
        row("compressed flag over plain text", container(1, hello), QString());
        QTest::newRow("plain words") << "hello world" << QString() << true;
        row("version 4", QByteArray(1, 4) + container(0, hello).mid(1), QString(), true);
    }

    void handBuiltContainers()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QFETCH(bool, warns);
        if (warns)
            QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
        QScopedPointer<Quiet> quiet(warns ? nullptr : new Quiet); // qUncompress complains
        QCOMPARE(CEncoder::Decode(CString(text), Key).text, expected);
    }

    void decodedSizeIsBounded_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("decodes");
        QTest::newRow("16 MiB") << (16 << 20) << true;
        QTest::newRow("16 MiB + 1") << (16 << 20) + 1 << false;
    }

    void decodedSizeIsBounded()
    {
        QFETCH(int, size);
        QFETCH(bool, decodes);
        const CString encoded = CEncoder::Encode(CString(QString(size, QLatin1Char('a'))), Key);
        QVERIFY(encoded.GetLength() < 100000); // compressed, well within the ratio
        if (!decodes)
            QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
        QCOMPARE(CEncoder::Decode(encoded, Key).GetLength(), decodes ? size : 0);
    }

    void validAndTampered()
    {
        for (const auto &valid : validContainers()) {
            const QByteArray &bytes = valid.first;
            QCOMPARE(decode(bytes), QString::fromLatin1(valid.second));
            for (int i = 2; i < bytes.size() && (bytes[1] & 6); ++i) {
                for (const int delta : {0x01, 0x80, 0xFF}) {
                    QByteArray tampered = bytes;
                    tampered[i] = char(tampered[i] ^ delta);
                    QVERIFY2(decode(tampered).isEmpty(),
                             qPrintable(QString::asprintf("flags %d: byte %d ^ %d accepted",
                                                          int(bytes[1]), i, delta)));
                }
            }
        }
    }

    void arbitraryInputNeverCrashes()
    {
        Quiet quiet;
        QRandomGenerator rng(20240611);
        auto randomBytes = [&rng](int n) {
            QByteArray b(n, Qt::Uninitialized);
            for (char &c : b)
                c = char(rng.bounded(256));
            return b;
        };
        const auto valid = validContainers();
        for (int round = 0; round < 4000; ++round) {
            QByteArray input;
            bool mustFail = true;
            switch (round % 4) {
            case 0: // anything at all; only a version-3 container without integrity may pass
                input = randomBytes(rng.bounded(80));
                mustFail = input.size() < 3 || input.at(0) != 3 || (input.at(1) & 6);
                break;
            case 1: // a protected container over garbage
                input = container(rng.bounded(2) ? 3 : 4, randomBytes(rng.bounded(64)));
                break;
            case 2: // a compressed block over garbage, half with a plausible size and zlib header
                input = randomBytes(6 + rng.bounded(64));
                if (rng.bounded(2)) {
                    qToBigEndian(quint32(rng.bounded(4096)), input.data());
                    input.replace(4, 2, "\x78\xDA");
                }
                input = container(1, input);
                break;
            default: // a valid container cut short
                input = valid[rng.bounded(valid.size())].first;
                input.truncate(rng.bounded(input.size()));
            }
            QVERIFY2(decode(input).isEmpty() || !mustFail,
                     qPrintable(QStringLiteral("round %1 accepted").arg(round)));
        }
    }

    void sha256()
    {
        QCOMPARE(CEncoder::EncodeSha256(CString()).text, QString()); // empty stays empty
        QCOMPARE(CEncoder::EncodeSha256(CString("abc")).text,
                 QStringLiteral("ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0="));
    }

    void password()
    {
        // 0: acceptable; 1: under 8 bytes; 2: lacks a letter, a digit or another byte (every
        // byte of a non-ASCII character is another byte).
        const char *passwords[] = {"abc1234!", "Ab1!xyz", "abc12345", "abcdefg!",
                                   "1234567!", "한글1a",  "한글한"};
        QVector<int> grades;
        for (const char *password : passwords)
            grades << PasswordChecker::IsValid(CString(password));
        QCOMPARE(grades, QVector<int>({0, 1, 2, 2, 2, 0, 2}));
    }
};

QTEST_GUILESS_MAIN(tst_Encoder)
#include "tst_encoder.moc"
