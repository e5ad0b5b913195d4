// CEncoder and PasswordChecker.
#include <CEncoder.h>
#include <PasswordChecker.h>

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
    qToBigEndian(qChecksum(data.constData(), uint(data.size()), Qt::ChecksumIso3309), sum.data());
    return sum;
}

const auto sha1 = [](const QByteArray &data) {
    return QCryptographicHash::hash(data, QCryptographicHash::Sha1);
};
// Valid containers: plain with checksum, compressed with checksum, compressed unprotected.
QVector<QByteArray> validContainers()
{
    const QByteArray text("user=admin;pw=Tr0ub4dor&3");
    const QByteArray packed = qCompress(text.repeated(40), 9);
    return {container(2, checksumBE(text) + text), container(3, checksumBE(packed) + packed),
            container(1, packed)};
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
        const QByteArray hello("hello"), longText = QByteArray("abc123").repeated(500);
        const QByteArray packed = qCompress(longText, 9);
        QByteArray lyingSize = packed, swapped = checksumBE(hello), version4 = container(0, hello);
        qToBigEndian(quint32(0x10000000), lyingSize.data()); // 256 MiB from 3 kB
        std::reverse(swapped.begin(), swapped.end());
        version4[0] = 4;
        auto row = [](const char *name, const QByteArray &container, const QString &expected,
                      bool warns = false) {
            QTest::newRow(name) << QString::fromLatin1(container.toBase64()) << expected << warns;
        };
        row("checksum", container(2, checksumBE(hello) + hello), "hello");
        row("checksum little-endian", container(2, swapped + hello), QString());
        row("other key", container(2, checksumBE(hello) + hello, 0x1122334455667788ULL), QString());
        row("checksum cut short", container(2, "x"), QString());
        row("sha1", container(4, sha1(hello) + hello), "hello");
        row("sha1 of other data", container(4, sha1("hellO") + hello), QString());
        row("sha1 cut short", container(4, sha1(hello).left(19)), QString());
        row("compressed + checksum", container(3, checksumBE(packed) + packed), longText);
        row("compressed, unprotected", container(1, packed), longText);
        row("unprotected", container(0, hello), "hello");
        row("compressed, size claim too large", container(1, lyingSize), QString());
        row("compressed flag over plain text", container(1, hello), QString());
        QTest::newRow("plain words") << "hello world" << QString() << true;
        row("version 4", version4, QString(), true);
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

    void tamperedByteFails_data()
    {
        QTest::addColumn<QByteArray>("container");
        QTest::newRow("plain") << validContainers()[0];
        QTest::newRow("compressed") << validContainers()[1];
    }

    void tamperedByteFails()
    {
        QFETCH(QByteArray, container);
        QVERIFY(!decode(container).isEmpty());
        for (int i = 2; i < container.size(); ++i) {
            for (const int delta : {0x01, 0x80, 0xFF}) {
                QByteArray tampered = container;
                tampered[i] = char(tampered[i] ^ delta);
                QVERIFY2(decode(tampered).isEmpty(),
                         qPrintable(QStringLiteral("byte %1 ^ %2 accepted").arg(i).arg(delta)));
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
        const QVector<QByteArray> valid = validContainers();
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
                    input[4] = char(0x78);
                    input[5] = char(0xDA);
                }
                input = container(1, input);
                break;
            default: // a valid container cut short
                input = valid[rng.bounded(3)];
                input.truncate(rng.bounded(input.size()));
            }
            const QString result = decode(input);
            if (mustFail)
                QVERIFY2(result.isEmpty(),
                         qPrintable(QStringLiteral("round %1 accepted").arg(round)));
        }
    }

    void sha256_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("digest");
        QTest::newRow("empty stays empty") << QString() << QString();
        QTest::newRow("abc") << "abc"
                             << "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=";
        QTest::newRow("two blocks") << "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"
                                    << "JI1qYdIGOLjlwCaTDD5gOaM85Flk/yFn9uzt1BnbBsE=";
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
        QTest::newRow("no other character") << "abc12345" << 2;
        QTest::newRow("acceptable") << "abc1234!" << 0;
        QTest::newRow("too short") << "Ab1!" << 1;
        QTest::newRow("seven bytes") << "Ab1!xyz" << 1;
        QTest::newRow("no digit") << "abcdefg!" << 2;
        QTest::newRow("no letter") << "1234567!" << 2;
        QTest::newRow("non-ASCII counts as other") << "한글1a" << 0;
        QTest::newRow("short in characters, long in bytes") << "한글한" << 2;
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
