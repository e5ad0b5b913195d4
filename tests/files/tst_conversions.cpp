// Hexa, Number, CDataSwap and MemoryData.
#include <CDataSwap.h>
#include <Hexa.h>
#include <MemoryData.h>
#include <Number.h>

#include <QtTest>

#include <climits>
#include <cmath>

namespace {

// A caller-owned MemoryData buffer, freed as the class requires.
struct Buffer
{
    ~Buffer() { delete[] data; }
    QByteArray bytes(int from, int count) const { return QByteArray(data + from, count); }
    int setInt(qint64 v, int n) { return MemoryData::SetIntData(&data, v, n, pos, capacity); }
    void setString(const CString &s) { MemoryData::SetStringData(&data, s, pos, capacity); }
    char *data = nullptr;
    int pos = 0;
    int capacity = 0;
};

// The text conversions, each printed so that one table holds them all.
using Convert = QString (*)(const QByteArray &input, int arg);

QString hexaCount(const QByteArray &text, int count)
{
    return QString::number(uint(Hexa::HexaStringToInt(text.constData(), count)), 16);
}

QString hexaText(const QByteArray &text, int)
{
    const QString number = QString::number(Hexa::HexaStringToInt(QString::fromUtf8(text)));
    const QString asText = Hexa::HexaStringToIntString(QString::fromUtf8(text));
    return asText == number ? number : number + QStringLiteral(" but text ") + asText;
}

QString intToHexa(const QByteArray &value, int bytes)
{
    return QString::fromLatin1(Hexa::IntToHexaString(value.toInt(), bytes));
}

QString isNumber(const QByteArray &text, int decimals)
{
    QByteArray copy = text;
    const int fromChars = Number::IsNumber(copy.data(), decimals) != 0;
    const int fromString = Number::IsNumber(CString(text.constData()), decimals) != 0;
    return fromChars == fromString ? QString::number(fromChars)
                                   : QStringLiteral("overloads differ");
}

// Hex text to bytes and back: "<bytes in hex> <text back>".
QString hexText(const QByteArray &text, int)
{
    const QByteArray bytes = MemoryData::ConvertFromText(CString(text.constData()));
    return QString::fromLatin1(bytes.toHex()) + QLatin1Char(' ') + MemoryData::ConvertToText(bytes);
}

} // namespace

Q_DECLARE_METATYPE(Convert)

class tst_Conversions : public QObject
{
    Q_OBJECT

private slots:
    void text_data()
    {
        QTest::addColumn<Convert>("convert");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("arg");
        QTest::addColumn<QString>("expected");
        auto row = [](const char *name, Convert convert, const char *input, int arg,
                      const char *expected) {
            QTest::newRow(name) << convert << QByteArray(input) << arg << QString(expected);
        };
        // HexaStringToInt(text, count), as unsigned hex.
        row("count: non-hex still shifts", hexaCount, "1G", 2, "10");
        row("count: 0 reads all, x counts 0", hexaCount, "0x1F", 0, "1f");
        row("count: lower case, shorter than text", hexaCount, "ff12", 2, "ff");
        row("count: all 32 bits", hexaCount, "FFFFFFFF", 0, "ffffffff");
        row("count: nine digits keep the low 32 bits", hexaCount, "123456789", 0, "23456789");
        row("count: terminator ends text, places shift", hexaCount, "1", 4, "1000");
        row("count: empty", hexaCount, "", 0, "0");
        row("count: negative", hexaCount, "1F", -1, "0");
        // HexaStringToInt(QString) and HexaStringToIntString, as decimal.
        row("text: 0x prefix", hexaText, "0x1F", 0, "31");
        row("text: signed", hexaText, "-10", 0, "-16");
        row("text: largest long", hexaText, "7FFFFFFF", 0, "2147483647");
        row("text: beyond a 32-bit long, first two", hexaText, "FFFFFFFF", 0, "255");
        row("text: bad text, first two", hexaText, "1FZZ", 0, "31");
        row("text: bad first two count 0", hexaText, "G1Z", 0, "1");
        row("text: bad two characters", hexaText, "ZZ", 0, "0");
        row("text: empty", hexaText, "", 0, "0");
        // IntToHexaString(value, bytes).
        row("to hexa: padded", intToHexa, "255", 2, "00FF");
        row("to hexa: low byte of -1", intToHexa, "-1", 1, "FF");
        row("to hexa: full word", intToHexa, "305441741", 4, "1234ABCD");
        row("to hexa: wider than int, zeros", intToHexa, "-1", 6, "0000FFFFFFFF");
        row("to hexa: zero bytes", intToHexa, "5", 0, "");
        row("to hexa: negative bytes", intToHexa, "5", -3, "");
        // IsNumber(text, allowDecimal), both overloads.
        row("number: exponent with sign", isNumber, "1E+5", 0, "1");
        row("number: exponent without sign", isNumber, "1E5", 0, "0");
        row("number: lower-case e", isNumber, "1e+5", 0, "0");
        row("number: E last", isNumber, "12E", 0, "0");
        row("number: minus anywhere", isNumber, "1-2", 0, "1");
        row("number: decimal refused", isNumber, "3.5", 0, "0");
        row("number: decimal allowed", isNumber, "3.5", 1, "1");
        row("number: empty is a number", isNumber, "", 0, "1");
        row("number: plus without E", isNumber, "+1", 0, "0");
        row("number: non-ASCII", isNumber, "1²", 0, "0");
        // ConvertFromText and ConvertToText.
        row("hex text: mixed case", hexText, "00FFa5", 0, "00ffa5 00FFA5");
        row("hex text: odd tail ignored", hexText, "ABC", 0, "ab AB");
        row("hex text: non-hex counts 0", hexText, "G1", 0, "01 01");
    }

    void text()
    {
        QFETCH(Convert, convert);
        QFETCH(QByteArray, input);
        QFETCH(int, arg);
        QFETCH(QString, expected);
        QCOMPARE(convert(input, arg), expected);
    }

    void toInt()
    {
        // Halves round away from zero only above it: below zero the value is truncated.
        const double values[] = {2.5, 2.4, 0.5, -0.5, -2.5, -2.7, 1e20, std::nan("")};
        QVector<int> got;
        for (const double value : values)
            got << Number::ToInt(value);
        QCOMPARE(got, QVector<int>({3, 2, 1, 0, -2, -2, INT_MAX, 0}));
    }

    void dataSwap_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("element");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("pairs") << 6 << 2 << QByteArray("020104030605");
        QTest::newRow("quads") << 4 << 4 << QByteArray("040302010506");
        QTest::newRow("not a multiple") << 6 << 4 << QByteArray("010203040506");
        QTest::newRow("element 0 ignored") << 6 << 0 << QByteArray("010203040506");
        QTest::newRow("size 0") << 0 << 2 << QByteArray("010203040506");
    }

    void dataSwap()
    {
        QFETCH(int, size);
        QFETCH(int, element);
        QFETCH(QByteArray, expected);
        QByteArray data = QByteArray::fromHex("010203040506");
        CDataSwap().Execute(data.data(), size, element);
        QCOMPARE(data.toHex(), expected);
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
        QCOMPARE(b.setInt(value, size), 1);
        QCOMPARE(b.pos, size);
        QCOMPARE(b.bytes(0, size).toHex(), expected);
        int pos = 0;
        QCOMPARE(MemoryData::GetIntData(b.data, size, pos), readBack);
        QCOMPARE(pos, size == 3 ? 0 : size); // 3 is no read width
    }

    void record()
    {
        Buffer b;
        MemoryData::SetFloatData(&b.data, 1.5f, b.pos, b.capacity);
        b.setString(CString("수온 ok"));
        b.setInt(-5, 8);
        const QByteArray text(300, 'x');
        b.setString(CString(text.constData()));
        b.setInt(0x1234, 2);
        // Over 65,535 bytes a string is cut so that its count matches the bytes that follow.
        b.setString(CString(QString(70000, QLatin1Char('a'))));
        QCOMPARE(b.bytes(0, 6).toHex(), QByteArray("3fc000000009")); // 9 UTF-8 bytes
        QCOMPARE(b.bytes(23 + 304, 2).toHex(), QByteArray("ffff"));
        QCOMPARE(b.pos, 4 + (2 + 9) + 8 + (2 + 300) + 2 + (2 + 0xFFFF));
        int pos = 0;
        QCOMPARE(MemoryData::GetFloatData(b.data, pos), 1.5f);
        QCOMPARE(MemoryData::GetStringData(b.data, pos).text, QStringLiteral("수온 ok"));
        QCOMPARE(MemoryData::GetIntData(b.data, 8, pos), -5LL);
        // Reading takes at most 259 bytes and moves by what it took, not by the stored count.
        QCOMPARE(MemoryData::GetStringData(b.data, pos).text, QString::fromLatin1(text.left(259)));
        QCOMPARE(pos, 23 + 2 + 259);
        pos += 41;
        QCOMPARE(MemoryData::GetIntData(b.data, 2, pos), 0x1234LL);
    }

    void reallocGrowth()
    {
        Buffer b;
        QCOMPARE(b.setInt(1, 1), 1);
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
        QCOMPARE(b.setInt(1, 9), 0);
        QCOMPARE(b.pos, 1);
    }
};

QTEST_APPLESS_MAIN(tst_Conversions)
#include "tst_conversions.moc"
