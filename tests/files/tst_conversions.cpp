// SPDX-License-Identifier: MIT
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

using Convert = QString (*)(const QByteArray &input, int arg);

} // namespace

Q_DECLARE_METATYPE(Convert)

class tst_Conversions : public QObject
{
    Q_OBJECT

private slots:
    void convert_data()
    {
        QTest::addColumn<Convert>("convert");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("arg");
        QTest::addColumn<QString>("expected");
        // Each conversion printed, so that one table holds them all.
        const Convert hexaCount = [](const QByteArray &text, int count) {
            return QString::number(uint(Hexa::HexaStringToInt(text.constData(), count)), 16);
        };
        const Convert hexaText = [](const QByteArray &text, int) { // both forms, as decimal
            const QString number = QString::number(Hexa::HexaStringToInt(QString::fromUtf8(text)));
            const QString asText = Hexa::HexaStringToIntString(QString::fromUtf8(text));
            return asText == number ? number : number + QStringLiteral(" but text ") + asText;
        };
        const Convert intToHexa = [](const QByteArray &value, int bytes) {
            return QString::fromLatin1(Hexa::IntToHexaString(value.toInt(), bytes));
        };
        const Convert isNumber = [](const QByteArray &text, int decimals) { // both overloads
            QByteArray copy = text;
            return QString::number(Number::IsNumber(copy.data(), decimals) != 0) +
                QString::number(Number::IsNumber(CString(text.constData()), decimals) != 0);
        };
        const Convert hexText = [](const QByteArray &text, int) { // "<bytes> <text back>"
            const QByteArray bytes = MemoryData::ConvertFromText(CString(text.constData()));
            return QString::fromLatin1(bytes.toHex() + ' ') + MemoryData::ConvertToText(bytes);
        };
        const Convert swapped = [](const QByteArray &size, int element) { // 01..06 in place
            QByteArray data = QByteArray::fromHex("010203040506");
            CDataSwap().Execute(data.data(), size.toInt(), element);
            return QString::fromLatin1(data.toHex());
        };
        // The hex value written in `size` bytes and read back: "<bytes> <value> <read position>".
        const Convert intData = [](const QByteArray &hex, int size) {
            Buffer b;
            if (b.setInt(qint64(hex.toULongLong(nullptr, 16)), size) != 1 || b.pos != size)
                return QStringLiteral("write failed");
            int pos = 0;
            const qint64 value = MemoryData::GetIntData(b.data, size, pos);
            return QString::fromLatin1(b.bytes(0, size).toHex() + ' ' + QByteArray::number(value) +
                                       ' ' + QByteArray::number(pos));
        };
        auto row = [](const char *name, Convert convert, const char *input, int arg,
                      const char *expected) {
            QTest::newRow(name) << convert << QByteArray(input) << arg << QString(expected);
        };
        // HexaStringToInt(text, count), as unsigned hex.
        row("count: non-hex still shifts", hexaCount, "1G", 2, "10");
        row("count: 0 reads all, x counts 0", hexaCount, "0x1F", 0, "1f");
        row("count: lower case, shorter than text", hexaCount, "ff12", 2, "ff");
        row("count: nine digits keep the low 32 bits", hexaCount, "123456789", 0, "23456789");
        row("count: terminator ends text, places shift", hexaCount, "1", 4, "1000");
        row("count: negative", hexaCount, "1F", -1, "0");
        // HexaStringToInt(QString) and HexaStringToIntString, as decimal.
        row("text: 0x prefix", hexaText, "0x1F", 0, "31");
        row("text: signed", hexaText, "-10", 0, "-16");
        row("text: largest long", hexaText, "7FFFFFFF", 0, "2147483647");
        row("text: beyond a 32-bit long, first two", hexaText, "FFFFFFFF", 0, "255");
        row("text: bad text, first two", hexaText, "1FZZ", 0, "31");
        row("text: bad two characters", hexaText, "ZZ", 0, "0");
        // IntToHexaString(value, bytes).
        row("to hexa: padded", intToHexa, "255", 2, "00FF");
        row("to hexa: low byte of -1", intToHexa, "-1", 1, "FF");
        row("to hexa: wider than int, zeros", intToHexa, "-1", 6, "0000FFFFFFFF");
        row("to hexa: zero bytes", intToHexa, "5", 0, "");
        row("to hexa: negative bytes", intToHexa, "5", -3, "");
        // IsNumber(text, allowDecimal): the char * overload, then the CString one.
        row("number: exponent with sign", isNumber, "1E+5", 0, "11");
        row("number: exponent without sign", isNumber, "1E5", 0, "00");
        row("number: lower-case e", isNumber, "1e+5", 0, "00");
        row("number: E last", isNumber, "12E", 0, "00");
        row("number: minus anywhere", isNumber, "1-2", 0, "11");
        row("number: decimal refused", isNumber, "3.5", 0, "00");
        row("number: decimal allowed", isNumber, "3.5", 1, "11");
        row("number: empty is a number", isNumber, "", 0, "11");
        row("number: plus without E", isNumber, "+1", 0, "00");
        row("number: non-ASCII", isNumber, "1²", 0, "00");
        // ConvertFromText and ConvertToText.
        row("hex text: mixed case", hexText, "00FFa5", 0, "00ffa5 00FFA5");
        row("hex text: odd tail ignored", hexText, "ABC", 0, "ab AB");
        row("hex text: non-hex counts 0", hexText, "G1", 0, "01 01");
        // CDataSwap::Execute(data, size, element).
        row("swap: pairs", swapped, "6", 2, "020104030605");
        row("swap: quads", swapped, "4", 4, "040302010506");
        row("swap: not a multiple", swapped, "6", 4, "010203040506");
        row("swap: element 0 ignored", swapped, "6", 0, "010203040506");
        row("swap: size 0", swapped, "0", 2, "010203040506");
        // SetIntData and GetIntData: big-endian; two and four bytes read unsigned, one signed.
        row("int 1: low byte", intData, "01020304F5F6F7F8", 1, "f8 -8 1");
        row("int 2: low two", intData, "01020304F5F6F7F8", 2, "f7f8 63480 2");
        row("int 4: low four", intData, "01020304F5F6F7F8", 4, "f5f6f7f8 4126603256 4");
        row("int 8", intData, "01020304F5F6F7F8", 8, "01020304f5f6f7f8 72623863832705016 8");
        row("int 3: memory order, no read width", intData, "01020304F5F6F7F8", 3, "f8f7f6 0 0");
    }

    void convert()
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

    void record()
    {
        Buffer b;
        MemoryData::SetFloatData(&b.data, 1.5f, b.pos, b.capacity);
        b.setString(CString("수온 ok"));
        b.setString(CString(QString(300, QLatin1Char('x'))));
        b.setInt(0x1234, 2);
        // Over 65,535 bytes a string is cut so that its count matches the bytes that follow.
        b.setString(CString(QString(70000, QLatin1Char('a'))));
        QCOMPARE(b.bytes(0, 6).toHex(), QByteArray("3fc000000009")); // 9 UTF-8 bytes
        QCOMPARE(b.bytes(15 + 304, 2).toHex(), QByteArray("ffff"));
        QCOMPARE(b.pos, 4 + (2 + 9) + (2 + 300) + 2 + (2 + 0xFFFF));
        int pos = 0;
        QCOMPARE(MemoryData::GetFloatData(b.data, pos), 1.5f);
        QCOMPARE(MemoryData::GetStringData(b.data, pos).text, QStringLiteral("수온 ok"));
        // Reading takes at most 259 bytes and moves by what it took, not by the stored count.
        QCOMPARE(MemoryData::GetStringData(b.data, pos).text, QString(259, QLatin1Char('x')));
        QCOMPARE(pos, 15 + 2 + 259);
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
        // Impossible sizes are refused and write nothing.
        QCOMPARE(QVector<int>({MemoryData::ReallocMem(&b.data, 1, -1, b.capacity),
                               MemoryData::ReallocMem(&b.data, INT_MAX, 1, b.capacity),
                               b.setInt(1, 9), b.pos}),
                 QVector<int>({0, 0, 0, 1}));
    }
};

QTEST_APPLESS_MAIN(tst_Conversions)
#include "tst_conversions.moc"
