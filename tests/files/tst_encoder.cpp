#include <CEncoder.h>
#include <PasswordChecker.h>

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

namespace {

const quint64 Key = 0x0123456789ABCDEFULL;

quint8 keyByte(quint64 key, int i)
{
    return quint8(key >> (8 * (i % 8)));
}

// Builds a container as its format describes, with a chosen "random" byte, so that every
// result below is the same on every run.
QByteArray container(int flags, const QByteArray &payload, quint64 key, char randomByte = 0x5A)
{
    QByteArray body = QByteArray(1, randomByte) + payload;
    char previous = 0;
    for (int i = 0; i < body.size(); ++i) {
        body[i] = char(keyByte(key, i) ^ quint8(body[i]) ^ quint8(previous));
        previous = body[i];
    }
    return QByteArray(1, 3) + QByteArray(1, char(flags)) + body;
}

QByteArray checksumBE(const QByteArray &data)
{
    char sum[2];
    qToBigEndian(qChecksum(data.constData(), uint(data.size()), Qt::ChecksumIso3309), sum);
    return QByteArray(sum, 2);
}

QByteArray sha1(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha1);
}

CString base64(const QByteArray &container)
{
    return CString(QString::fromLatin1(container.toBase64()));
}

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
        QTest::newRow("key 0") << QStringLiteral("pw=secret") << 0LL << 2;
        QTest::newRow("long repetitive: compressed")
            << QStringLiteral("PLC1,192.168.0.10,502;").repeated(200) << qlonglong(Key) << 3;
        QTest::newRow("binary-looking") << binaryLooking << qlonglong(Key) << -1;
    }

    void roundTrip()
    {
        QFETCH(QString, text);
        QFETCH(qlonglong, key);
        QFETCH(int, flags);
        const CString encoded = CEncoder::Encode(CString(text), key);
        const QByteArray raw = QByteArray::fromBase64(encoded.text.toLatin1());
        QCOMPARE(int(raw[0]), 3);
        if (flags >= 0)
            QCOMPARE(int(raw[1]), flags);
        if (text.isEmpty())
            QCOMPARE(raw.size(), 5);
        QCOMPARE(CEncoder::Decode(encoded, key).text, text);
    }

    void encodingsDiffer()
    {
        QSet<QString> seen;
        for (int i = 0; i < 16; ++i)
            seen.insert(CEncoder::Encode(CString("same"), Key).text);
        QVERIFY(seen.size() > 1);
    }

    void handBuiltContainers_data()
    {
        QTest::addColumn<QByteArray>("container");
        QTest::addColumn<QString>("expected");
        const QByteArray hello("hello");
        const QByteArray longText = QByteArray("abc123").repeated(500);
        const QByteArray packed = qCompress(longText, 9);
        QByteArray lyingSize = packed;
        qToBigEndian(quint32(0x10000000), lyingSize.data()); // 256 MiB from 3 kB
        QByteArray swapped = checksumBE(hello);
        std::reverse(swapped.begin(), swapped.end());
        const QString helloText = QStringLiteral("hello");

        QTest::newRow("checksum") << container(2, checksumBE(hello) + hello, Key) << helloText;
        QTest::newRow("checksum little-endian") << container(2, swapped + hello, Key) << QString();
        QTest::newRow("other key")
            << container(2, checksumBE(hello) + hello, 0x1122334455667788ULL) << QString();
        QTest::newRow("checksum cut short") << container(2, QByteArray(1, 'x'), Key) << QString();
        QTest::newRow("sha1") << container(4, sha1(hello) + hello, Key) << helloText;
        QTest::newRow("sha1 of other data")
            << container(4, sha1("hellO") + hello, Key) << QString();
        QTest::newRow("sha1 cut short") << container(4, sha1(hello).left(19), Key) << QString();
        QTest::newRow("compressed + checksum")
            << container(3, checksumBE(packed) + packed, Key) << QString::fromLatin1(longText);
        QTest::newRow("compressed, unprotected")
            << container(1, packed, Key) << QString::fromLatin1(longText);
        QTest::newRow("unprotected") << container(0, hello, Key) << helloText;
        QTest::newRow("compressed, size claim too large")
            << container(1, lyingSize, Key) << QString();
        QTest::newRow("compressed flag over plain text") << container(1, hello, Key) << QString();
    }

    void handBuiltContainers()
    {
        QFETCH(QByteArray, container);
        QFETCH(QString, expected);
        Quiet quiet; // qUncompress complains about the corrupt blocks
        QCOMPARE(CEncoder::Decode(base64(container), Key).text, expected);
    }

    void tamperedByteFails_data()
    {
        QTest::addColumn<QByteArray>("container");
        const QByteArray text("user=admin;pw=Tr0ub4dor&3");
        const QByteArray packed = qCompress(text.repeated(40), 9);
        QTest::newRow("plain") << container(2, checksumBE(text) + text, Key);
        QTest::newRow("compressed") << container(3, checksumBE(packed) + packed, Key);
    }

    void tamperedByteFails()
    {
        QFETCH(QByteArray, container);
        QVERIFY(!CEncoder::Decode(base64(container), Key).IsEmpty());
        for (int i = 2; i < container.size(); ++i) {
            for (const int delta : {0x01, 0x80, 0xFF}) {
                QByteArray tampered = container;
                tampered[i] = char(tampered[i] ^ delta);
                QVERIFY2(CEncoder::Decode(base64(tampered), Key).IsEmpty(),
                         qPrintable(QStringLiteral("byte %1 ^ %2 accepted").arg(i).arg(delta)));
            }
        }
    }

    void notACiphertext_data()
    {
        QTest::addColumn<QString>("text");
        const QByteArray hello("hello");
        QByteArray version4 = container(2, checksumBE(hello) + hello, Key);
        version4[0] = 4;
        QTest::newRow("plain words") << QStringLiteral("hello world");
        QTest::newRow("version 4") << QString::fromLatin1(version4.toBase64());
    }

    void notACiphertext()
    {
        QFETCH(QString, text);
        QTest::ignoreMessage(QtWarningMsg, "Invalid version or not a cyphertext.");
        QVERIFY(CEncoder::Decode(CString(text), Key).IsEmpty());
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
        const QByteArray text = QByteArray("setting=value;").repeated(30);
        const QByteArray packed = qCompress(text, 9);
        const QByteArray valid[] = {container(2, checksumBE(text) + text, Key),
                                    container(3, checksumBE(packed) + packed, Key),
                                    container(1, packed, Key)};
        for (int round = 0; round < 4000; ++round) {
            QByteArray input;
            bool mustFail = true;
            switch (round % 4) {
            case 0: // anything at all; only a version-3 container without integrity may pass
                input = randomBytes(rng.bounded(80));
                mustFail = input.size() < 3 || input.at(0) != 3 || (input.at(1) & 6);
                break;
            case 1: // a protected container over garbage
                input = container(rng.bounded(2) ? 3 : 4, randomBytes(rng.bounded(64)), Key);
                break;
            case 2: // a compressed block over garbage, half with a plausible size and zlib header
                input = randomBytes(6 + rng.bounded(64));
                if (rng.bounded(2)) {
                    qToBigEndian(quint32(rng.bounded(4096)), input.data());
                    input[4] = char(0x78);
                    input[5] = char(0xDA);
                }
                input = container(1, input, Key);
                break;
            default: // a valid container cut short
                input = valid[rng.bounded(3)];
                input.truncate(rng.bounded(input.size()));
            }
            const CString result = CEncoder::Decode(base64(input), Key);
            if (mustFail)
                QVERIFY2(result.IsEmpty(),
                         qPrintable(QStringLiteral("round %1 accepted").arg(round)));
        }
    }

    void sha256_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("digest");
        QTest::newRow("empty stays empty") << QString() << QString();
        QTest::newRow("abc") << QStringLiteral("abc")
                             << QStringLiteral("ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
        QTest::newRow("two blocks")
            << QStringLiteral("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq")
            << QStringLiteral("JI1qYdIGOLjlwCaTDD5gOaM85Flk/yFn9uzt1BnbBsE=");
    }

    void sha256()
    {
        QFETCH(QString, text);
        QFETCH(QString, digest);
        QCOMPARE(CEncoder::EncodeSha256(CString(text)).text, digest);
    }

    void password_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<int>("grade");
        QTest::newRow("no other character") << QStringLiteral("abc12345") << 2;
        QTest::newRow("acceptable") << QStringLiteral("abc1234!") << 0;
        QTest::newRow("too short") << QStringLiteral("Ab1!") << 1;
        QTest::newRow("seven bytes") << QStringLiteral("Ab1!xyz") << 1;
        QTest::newRow("no digit") << QStringLiteral("abcdefg!") << 2;
        QTest::newRow("no letter") << QStringLiteral("1234567!") << 2;
        QTest::newRow("non-ASCII counts as other") << QStringLiteral("한글1a") << 0;
        QTest::newRow("short in characters, long in bytes") << QStringLiteral("한글한") << 2;
    }

    void password()
    {
        QFETCH(QString, password);
        QFETCH(int, grade);
        QCOMPARE(PasswordChecker::IsValid(CString(password)), grade);
    }
};

QTEST_GUILESS_MAIN(tst_Encoder)
#include "tst_encoder.moc"
