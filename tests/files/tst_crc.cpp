// SPDX-License-Identifier: MIT
// CCrc: the CRCs against their published check values and an independent form, and the sums.
#include <CCrc.h>

#include <QRandomGenerator>
#include <QtTest>

using CrcFunction = int (*)(unsigned char *, int);
using SumFunction = int (*)(unsigned char *, int, int);
Q_DECLARE_METATYPE(CrcFunction)
Q_DECLARE_METATYPE(SumFunction)

namespace {

unsigned char *bytes(QByteArray &data)
{
    return reinterpret_cast<unsigned char *>(data.data());
}

// The textbook CRC of the catalogue of parametrised CRC algorithms: an MSB-first register with
// the unreflected polynomial, input bytes and result reflected. Independent of the library's forms.
int catalogueCrc(const QByteArray &data, quint16 poly, quint16 init, quint16 xorOut)
{
    auto reflect = [](quint32 v, int bits) {
        quint32 r = 0;
        for (int i = 0; i < bits; ++i)
            r |= ((v >> i) & 1) << (bits - 1 - i);
        return r;
    };
    quint16 reg = init;
    for (const char c : data) {
        reg ^= quint16(reflect(quint8(c), 8) << 8);
        for (int b = 0; b < 8; ++b)
            reg = (reg & 0x8000) ? quint16((reg << 1) ^ poly) : quint16(reg << 1);
    }
    return int(reflect(reg, 16) ^ xorOut);
}

} // namespace

class tst_Crc : public QObject
{
    Q_OBJECT

private slots:
    void crcs_data()
    {
        QTest::addColumn<CrcFunction>("crc");
        QTest::addColumn<int>("check"); // of "123456789"
        QTest::addColumn<int>("empty");
        QTest::addColumn<int>("poly");
        QTest::addColumn<int>("init");
        QTest::addColumn<int>("xorOut");
        QTest::addColumn<bool>("exchanged");
        QTest::newRow("MODBUS bitwise")
            << &CCrc::GetCrc16_15_13_1 << 0x4B37 << -1 << 0x8005 << 0xFFFF << 0 << false;
        QTest::newRow("MODBUS tables, bytes exchanged")
            << &CCrc::GetCrc16_15_2_1 << 0x374B << -1 << 0x8005 << 0xFFFF << 0 << true;
        QTest::newRow("ARC") << &CCrc::GetCrc16_5_2_1 << 0xBB3D << 0 << 0x8005 << 0 << 0 << false;
        QTest::newRow("DNP, 32-bit complement")
            << &CCrc::GetCrcDNP << int(0xFFFFEA82) << -1 << 0x3D65 << 0 << 0xFFFF << false;
    }

    void crcs()
    {
        QFETCH(CrcFunction, crc);
        QFETCH(int, check);
        QFETCH(int, empty);
        QFETCH(int, poly);
        QFETCH(int, init);
        QFETCH(int, xorOut);
        QFETCH(bool, exchanged);
        QByteArray data("123456789");
        QCOMPARE(crc(bytes(data), data.size()), check);
        QCOMPARE(crc(bytes(data), 0), empty);
        QCOMPARE(crc(bytes(data), -5), empty);
        QCOMPARE(crc(nullptr, 9), empty);

        QRandomGenerator rng(7);
        for (int round = 0; round < 2000; ++round) {
            data.resize(1 + rng.bounded(1024));
            for (char &c : data)
                c = char(rng.bounded(256));
            int expected = catalogueCrc(data, quint16(poly), quint16(init), quint16(xorOut));
            if (exchanged)
                expected = ((expected & 0xFF) << 8) | (expected >> 8);
            QCOMPARE(crc(bytes(data), data.size()) & 0xFFFF, expected);
        }
    }

    void sums_data()
    {
        QTest::addColumn<SumFunction>("sum");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<int>("init");
        QTest::addColumn<int>("expected");
        const SumFunction xorAdd = [](unsigned char *b, int n, int) {
            return CCrc::GetCrcXorAdd(b, n);
        };
        auto row = [](const char *name, SumFunction sum, const char *data, int init, int expected) {
            QTest::newRow(name) << sum << QByteArray(data) << init << expected;
        };
        row("sum16 not cut to 16 bits", &CCrc::GetCrcSum16, "\xFF\xFF\xFF", 0xFFFF, 0x102FC);
        row("sub16 negative", &CCrc::GetCrcSub16, "\x01\x02", 0, -3);
        row("xor16", &CCrc::GetCrcXor16, "\x0F\xF0", 0x1234, 0x12CB);
        row("sum8 keeps high bits", &CCrc::GetCrcSum8, "\xFF\x02", 0x1200, 0x1201);
        row("sum8 negative init", &CCrc::GetCrcSum8, "\x01", -1, -256);
        row("sub8 wraps low byte", &CCrc::GetCrcSub8, "\x01", 0x1200, 0x12FF);
        row("xor8 keeps high bits", &CCrc::GetCrcXor8, "\x12\x34", 0xAB00, 0xAB26);
        row("empty sum8: init", &CCrc::GetCrcSum8, "", 0x1234, 0x1234);
        row("empty sub16: init", &CCrc::GetCrcSub16, "", 77, 77);
        row("hex sum8", &CCrc::Get2ByteHexSum8, "FF02", 0x1200, 0x1201);
        row("hex sum8 odd tail", &CCrc::Get2ByteHexSum8, "0a0B0", 0, 0x15);
        row("hex sum8 non-hex", &CCrc::Get2ByteHexSum8, "1G", 0, 0x10);
        row("xor-add 01 02 03", xorAdd, "\x01\x02\x03", 0, 6);
        row("xor-add high byte", xorAdd, "\x80\x01", 0, 0x8181);
        row("xor-add sum mod 256", xorAdd, "\xFF\xFF", 0, 0xFE);
        row("xor-add empty", xorAdd, "", 5, 0);
    }

    void sums()
    {
        QFETCH(SumFunction, sum);
        QFETCH(QByteArray, data);
        QFETCH(int, init);
        QFETCH(int, expected);
        QCOMPARE(sum(bytes(data), data.size(), init), expected);
    }
};

QTEST_APPLESS_MAIN(tst_Crc)
#include "tst_crc.moc"
