#include <CDataSwap.h>
#include <Hexa.h>
#include <MemoryData.h>
#include <Number.h>

#include <QtTest>

#include <climits>
#include <cmath>

// A caller-owned MemoryData buffer, freed as the class requires.
struct Buffer
{
    ~Buffer() { delete[] data; }
    QByteArray bytes(int from, int count) const { return QByteArray(data + from, count); }
    char *data = nullptr;
    int pos = 0;
    int capacity = 0;
};

class tst_Conversions : public QObject
{
    Q_OBJECT

private slots:
    void hexaCount_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("expected");
        QTest::newRow("non-hex still shifts") << QByteArray("1G") << 2 << 0x10;
        QTest::newRow("count 0 reads all, x counts 0") << QByteArray("0x1F") << 0 << 0x1F;
        QTest::newRow("lower case, count shorter than text") << QByteArray("ff12") << 2 << 0xFF;
        QTest::newRow("all 32 bits") << QByteArray("FFFFFFFF") << 0 << -1;
        QTest::newRow("nine digits keep the low 32 bits")
            << QByteArray("123456789") << 0 << 0x23456789;
        QTest::newRow("terminator ends text, places still shift") << QByteArray("1") << 4 << 0x1000;
        QTest::newRow("empty") << QByteArray("") << 0 << 0;
        QTest::newRow("negative count") << QByteArray("1F") << -1 << 0;
    }

    void hexaCount()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, count);
        QFETCH(int, expected);
        QCOMPARE(Hexa::HexaStringToInt(text.constData(), count), expected);
    }

    void hexaQString_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");
        QTest::newRow("0x prefix") << QStringLiteral("0x1F") << 31;
        QTest::newRow("signed") << QStringLiteral("-10") << -16;
        QTest::newRow("largest long") << QStringLiteral("7FFFFFFF") << INT_MAX;
        QTest::newRow("beyond a 32-bit long: first two") << QStringLiteral("FFFFFFFF") << 0xFF;
        QTest::newRow("bad text: first two") << QStringLiteral("1FZZ") << 31;
        QTest::newRow("bad first two count 0") << QStringLiteral("G1Z") << 0x01;
        QTest::newRow("bad two characters") << QStringLiteral("ZZ") << 0;
        QTest::newRow("empty") << QString() << 0;
    }

    void hexaQString()
    {
        QFETCH(QString, text);
        QFETCH(int, expected);
        QCOMPARE(Hexa::HexaStringToInt(text), expected);
        QCOMPARE(Hexa::HexaStringToIntString(text), QString::number(expected));
    }

    void intToHexa_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("bytes");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("padded") << 255 << 2 << QByteArray("00FF");
        QTest::newRow("low byte of -1") << -1 << 1 << QByteArray("FF");
        QTest::newRow("full word") << 0x1234ABCD << 4 << QByteArray("1234ABCD");
        QTest::newRow("wider than int: zeros") << -1 << 6 << QByteArray("0000FFFFFFFF");
        QTest::newRow("zero bytes") << 5 << 0 << QByteArray();
        QTest::newRow("negative bytes") << 5 << -3 << QByteArray();
    }

    void intToHexa()
    {
        QFETCH(int, value);
        QFETCH(int, bytes);
        QFETCH(QByteArray, expected);
        QCOMPARE(Hexa::IntToHexaString(value, bytes), expected);
    }

    void isNumber_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("decimals");
        QTest::addColumn<bool>("expected");
        QTest::newRow("exponent with sign") << QByteArray("1E+5") << false << true;
        QTest::newRow("exponent without sign") << QByteArray("1E5") << false << false;
        QTest::newRow("lower-case e") << QByteArray("1e+5") << false << false;
        QTest::newRow("E last") << QByteArray("12E") << false << false;
        QTest::newRow("minus anywhere") << QByteArray("1-2") << false << true;
        QTest::newRow("decimal refused") << QByteArray("3.5") << false << false;
        QTest::newRow("decimal allowed") << QByteArray("3.5") << true << true;
        QTest::newRow("empty is a number") << QByteArray("") << false << true;
        QTest::newRow("plus without E") << QByteArray("+1") << false << false;
        QTest::newRow("non-ASCII") << QByteArray("1²") << false << false;
    }

    void isNumber()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, decimals);
        QFETCH(bool, expected);
        QCOMPARE(Number::IsNumber(text.data(), decimals) != 0, expected);
        QCOMPARE(Number::IsNumber(CString(text.constData()), decimals) != 0, expected);
    }

    void toInt_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("expected");
        QTest::newRow("2.5 up") << 2.5 << 3;
        QTest::newRow("2.4 down") << 2.4 << 2;
        QTest::newRow("0.5 up") << 0.5 << 1;
        QTest::newRow("-0.5 truncated") << -0.5 << 0;
        QTest::newRow("-2.5 truncated") << -2.5 << -2;
        QTest::newRow("-2.7 truncated") << -2.7 << -2;
        QTest::newRow("huge clamped") << 1e20 << INT_MAX;
        QTest::newRow("NaN") << std::nan("") << 0;
    }

    void toInt()
    {
        QFETCH(double, value);
        QFETCH(int, expected);
        QCOMPARE(Number::ToInt(value), expected);
    }

    void dataSwap_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("element");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("pairs") << 6 << 2 << QByteArray::fromHex("020104030605");
        QTest::newRow("quads") << 4 << 4 << QByteArray::fromHex("040302010506");
        QTest::newRow("not a multiple") << 6 << 4 << QByteArray::fromHex("010203040506");
        QTest::newRow("element 0 ignored") << 6 << 0 << QByteArray::fromHex("010203040506");
        QTest::newRow("size 0") << 0 << 2 << QByteArray::fromHex("010203040506");
    }

    void dataSwap()
    {
        QFETCH(int, size);
        QFETCH(int, element);
        QFETCH(QByteArray, expected);
        QByteArray data = QByteArray::fromHex("010203040506");
        CDataSwap().Execute(data.data(), size, element);
        QCOMPARE(data.toHex(), expected.toHex());
    }

    void intData_data()
    {
        QTest::addColumn<qlonglong>("value");
        QTest::addColumn<int>("size");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<qlonglong>("readBack");
        const qlonglong v = 0x0102030405060708LL;
        QTest::newRow("1: low byte") << v << 1 << QByteArray("08") << 8LL;
        QTest::newRow("2: low two, big-endian") << v << 2 << QByteArray("0708") << 0x0708LL;
        QTest::newRow("4: low four, big-endian")
            << v << 4 << QByteArray("05060708") << 0x05060708LL;
        QTest::newRow("8: big-endian") << v << 8 << QByteArray("0102030405060708") << v;
        QTest::newRow("3: memory order, not a read width") << v << 3 << QByteArray("080706") << 0LL;
        QTest::newRow("1: read as signed char") << -1LL << 1 << QByteArray("ff") << -1LL;
        QTest::newRow("2: read unsigned") << -1LL << 2 << QByteArray("ffff") << 0xFFFFLL;
        QTest::newRow("4: read unsigned") << -1LL << 4 << QByteArray("ffffffff") << 0xFFFFFFFFLL;
        QTest::newRow("8: negative") << -2LL << 8 << QByteArray("fffffffffffffffe") << -2LL;
    }

    void intData()
    {
        QFETCH(qlonglong, value);
        QFETCH(int, size);
        QFETCH(QByteArray, expected);
        QFETCH(qlonglong, readBack);
        Buffer b;
        QCOMPARE(MemoryData::SetIntData(&b.data, value, size, b.pos, b.capacity), 1);
        QCOMPARE(b.pos, size);
        QCOMPARE(b.bytes(0, size).toHex(), expected);
        int pos = 0;
        QCOMPARE(MemoryData::GetIntData(b.data, size, pos), readBack);
        QCOMPARE(pos, size == 3 ? 0 : size); // 3 is no read width
    }

    void recordRoundTrip()
    {
        Buffer b;
        MemoryData::SetFloatData(&b.data, 1.5f, b.pos, b.capacity);
        MemoryData::SetStringData(&b.data, CString("수온 ok"), b.pos, b.capacity);
        MemoryData::SetIntData(&b.data, -5, 8, b.pos, b.capacity);
        QCOMPARE(b.bytes(0, 6).toHex(), QByteArray("3fc000000009")); // 9 UTF-8 bytes
        QCOMPARE(b.pos, 4 + 2 + 9 + 8);
        int pos = 0;
        QCOMPARE(MemoryData::GetFloatData(b.data, pos), 1.5f);
        QCOMPARE(MemoryData::GetStringData(b.data, pos).text, QStringLiteral("수온 ok"));
        QCOMPARE(MemoryData::GetIntData(b.data, 8, pos), -5LL);
        QCOMPARE(pos, b.pos);
    }

    void stringCapLeavesPositionShort()
    {
        Buffer b;
        const QByteArray text(300, 'x');
        MemoryData::SetStringData(&b.data, CString(text.constData()), b.pos, b.capacity);
        MemoryData::SetIntData(&b.data, 0x1234, 2, b.pos, b.capacity);
        int pos = 0;
        QCOMPARE(MemoryData::GetStringData(b.data, pos).text, QString::fromLatin1(text.left(259)));
        QCOMPARE(pos, 2 + 259); // 41 bytes short of the next field
        pos += 41;
        QCOMPARE(MemoryData::GetIntData(b.data, 2, pos), 0x1234LL);
    }

    void longStringKeepsCountAndBytesTogether()
    {
        Buffer b;
        MemoryData::SetStringData(&b.data, CString(QString(70000, QLatin1Char('a'))), b.pos,
                                  b.capacity);
        QCOMPARE(b.pos, 2 + 0xFFFF);
        QCOMPARE(b.bytes(0, 2).toHex(), QByteArray("ffff"));
    }

    void reallocGrowth()
    {
        Buffer b;
        QCOMPARE(MemoryData::SetIntData(&b.data, 1, 1, b.pos, b.capacity), 1);
        QCOMPARE(b.capacity, 1 + 5000);
        b.data[0] = 'k';

        // Room for 5,000 more (in use + add = 5,000 < 5,001): the same array.
        char *before = b.data;
        QCOMPARE(MemoryData::ReallocMem(&b.data, 1, 4999, b.capacity), 1);
        QCOMPARE(b.data, before);
        // Equal to the capacity is not enough: a new array, keeping the bytes in use.
        QCOMPARE(MemoryData::ReallocMem(&b.data, 1, 5000, b.capacity), 1);
        QCOMPARE(b.capacity, 1 + 5000 + 5000);
        QCOMPARE(b.data[0], 'k');
        QCOMPARE(MemoryData::ReallocMem(&b.data, 1, -1, b.capacity), 0);
        QCOMPARE(MemoryData::ReallocMem(&b.data, INT_MAX, 1, b.capacity), 0);
        QCOMPARE(MemoryData::SetIntData(&b.data, 1, 9, b.pos, b.capacity), 0);
        QCOMPARE(b.pos, 1);
    }

    void hexText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("back");
        QTest::newRow("mixed case") << QStringLiteral("00FFa5") << QByteArray::fromHex("00ffa5")
                                    << QStringLiteral("00FFA5");
        QTest::newRow("odd tail ignored")
            << QStringLiteral("ABC") << QByteArray::fromHex("ab") << QStringLiteral("AB");
        QTest::newRow("non-hex counts 0")
            << QStringLiteral("G1") << QByteArray::fromHex("01") << QStringLiteral("01");
    }

    void hexText()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, data);
        QFETCH(QString, back);
        const QByteArray bytes = MemoryData::ConvertFromText(CString(text));
        QCOMPARE(bytes.toHex(), data.toHex());
        QCOMPARE(MemoryData::ConvertToText(bytes), back);
    }
};

QTEST_APPLESS_MAIN(tst_Conversions)
#include "tst_conversions.moc"
