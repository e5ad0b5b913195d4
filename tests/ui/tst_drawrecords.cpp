// SPDX-License-Identifier: MIT
#include <CBrush.h>
#include <CFile.h>
#include <CPen.h>
#include <CXmlEx.h>
#include <LogBrush.h>
#include <LogFont.h>
#include <LogPen.h>
#include <VantorStrings.h>

#include <QtTest>

#include <memory>

using namespace TreeXml;

enum Record { Pen, Brush, Font };
Q_DECLARE_METATYPE(Record)

namespace {

/// Calls `fn` with a default-constructed record of kind `r`.
template<typename Fn>
void visit(Record r, Fn &&fn)
{
    LogPen pen;
    LogBrush brush;
    LogFont font;
    if (r == Pen)
        fn(pen);
    else if (r == Brush)
        fn(brush);
    else
        fn(font);
}

/// The bytes `record` writes to a memory file.
template<typename R>
QByteArray written(R &record)
{
    CFile file;
    if (!file.Open(CString(), 2) || !record.Write(file))
        return "write failed";
    QByteArray bytes(int(file.Size()), '\0');
    file.Seek(0);
    file.Read(bytes.data(), bytes.size());
    return bytes.toHex(' ');
}

/// Reads `record` from a memory file holding `bytes`.
template<typename R>
bool readFrom(R &record, QByteArray bytes)
{
    CFile file;
    file.Open(CString(), 2);
    file.Write(bytes.data(), bytes.size());
    file.Seek(0);
    return record.Read(file);
}

} // namespace

class tst_DrawRecords : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { VantorStrings::Init(); }

    void records_data()
    {
        QTest::addColumn<Record>("record");
        QTest::addColumn<QByteArray>("defaults"); // what a new record writes
        QTest::addColumn<QByteArray>("bytes");    // a sample whose bytes all differ
        QTest::addColumn<QByteArray>("xml");      // the sample's elements under its node

        QTest::newRow("LogPen: style, width, colour")
            << Pen << QByteArray::fromHex("0000 0100 00000000")
            << QByteArray::fromHex("0200 0301 33221100")
            << QByteArray("\t\t<LogPen>\n"
                          "\t\t\t<LogPenStyle>2</LogPenStyle>\n"
                          "\t\t\t<LogPenWidth>259</LogPenWidth>\n"
                          "\t\t\t<LogPenColor>1122867</LogPenColor>\n"
                          "\t\t</LogPen>\n");
        // The file has the hatch before the colour, the XML the colour before the hatch.
        QTest::newRow("LogBrush: style, hatch, colour")
            << Brush << QByteArray::fromHex("0000 0400 ffffff00")
            << QByteArray::fromHex("0100 0500 c0b0a000")
            << QByteArray("\t\t<Style>1</Style>\n"
                          "\t\t<Color>10531008</Color>\n"
                          "\t\t<Hatch>5</Hatch>\n");
        QTest::newRow("LogFont: family, size, weight, writing system, flag")
            << Font
            << QByteArray::fromHex("05000000") + "Arial" +
                QByteArray::fromHex("0a000000 00 00 0000")
            << QByteArray::fromHex("0d000000") + QByteArray("맑은 고딕") +
                QByteArray::fromHex("f4ffffff 4b 08 0281")
            << QByteArray("\t\t<Family>맑은 고딕</Family>\n"
                          "\t\t<Size>-12</Size>\n"
                          "\t\t<Weight>75</Weight>\n"
                          "\t\t<WritingSystem>8</WritingSystem>\n"
                          "\t\t<Flag>33026</Flag>\n");
    }

    void records()
    {
        QFETCH(Record, record);
        QFETCH(QByteArray, defaults);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, xml);

        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray path = dir.filePath(QStringLiteral("style.xml")).toLocal8Bit();
        CXmlEx doc;
        doc.Create("Drawing");
        std::unique_ptr<CXmlNode> item(doc.CreateNode(doc.m_Xml.GetRoot(), "Item"));
        visit(record, [&](auto &sample) {
            QCOMPARE(written(sample), defaults.toHex(' '));
            // Every truncation fails and leaves the record as it was.
            for (int keep = 0; keep < bytes.size(); ++keep) {
                QVERIFY2(!readFrom(sample, bytes.left(keep)), qPrintable(QString::number(keep)));
                QCOMPARE(written(sample), defaults.toHex(' '));
            }
            QVERIFY(readFrom(sample, bytes));
            QCOMPARE(written(sample), bytes.toHex(' '));
            std::decay_t<decltype(sample)> copy;
            copy = sample;
            QCOMPARE(written(copy), bytes.toHex(' ')); // every field assigned
            sample.WriteXml(doc, item.get());
            sample.WriteXml(doc, nullptr); // nowhere to go: ignored
        });
        QVERIFY(!item->m_pLastChild); // no node of ours is left behind
        doc.m_Xml.SaveWithFormatted(path.constData());

        // The element names show which field went where.
        QFile file(QString::fromLocal8Bit(path));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()),
                 QString::fromUtf8("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n"
                                   "<Drawing>\n\t<Item>\n" +
                                   xml + "\t</Item>\n</Drawing>\n"));
        QProcess lint;
        lint.start(QStringLiteral("xmllint"), {QStringLiteral("--noout"), file.fileName()});
        QVERIFY2(lint.waitForFinished(), "xmllint (libxml2-utils) is needed");
        QCOMPARE(lint.exitCode(), 0);
        QCOMPARE(lint.readAllStandardError(), QByteArray());
    }

    void penFromRecord()
    {
        LogPen record;
        record.m_nStyle = 2;
        record.m_nWidth = 3;
        record.m_Color = 0x00112233;
        CPen pen;
        QVERIFY(pen.CreatePenIndirect(&record));
        QCOMPARE(pen.style(), Qt::DashLine);
        QCOMPARE(pen.width(), 3);
        QCOMPARE(pen.color(), QColor(0x33, 0x22, 0x11));
        QVERIFY(!pen.CreatePenIndirect(nullptr));
        QCOMPARE(pen.width(), 3);
        // Width 0 stays Qt's one-pixel cosmetic pen; bad values become a solid pen of width 1.
        pen.CreatePen(1, 0, 0);
        QCOMPARE(pen.width(), 0);
        pen.CreatePen(9, -2, 0);
        QCOMPARE(qMakePair(pen.style(), pen.width()), qMakePair(Qt::SolidLine, 1));
    }

    // A stock brush is solid in the colour the brush already has, except the null brush.
    void stockBrush()
    {
        CBrush brush;
        brush.CreateHatchBrush(CBrush::NullBrush, 0x0000FF);
        QCOMPARE(brush.style(), Qt::NoBrush);
        brush.CreateStockObject(GRAY_BRUSH);
        QCOMPARE(brush.style(), Qt::SolidPattern);
        QCOMPARE(brush.color(), QColor(0xFF, 0, 0));
        brush.CreateStockObject(CBrush::NullBrush);
        QCOMPARE(brush.style(), Qt::NoBrush);
    }
};

QTEST_GUILESS_MAIN(tst_DrawRecords)
#include "tst_drawrecords.moc"
