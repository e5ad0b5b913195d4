#include <CFile.h>
#include <CPen.h>
#include <CXmlEx.h>
#include <LogBrush.h>
#include <LogFont.h>
#include <LogPen.h>
#include <VantorStrings.h>

#include <QtTest>

#include <memory>
#include <type_traits>

using namespace TreeXml;

enum Record { Pen, Brush, Font };
Q_DECLARE_METATYPE(Record)

namespace {

// Sample values whose bytes all differ, so a swapped field or a wrong width shows.
void setSample(LogPen &p)
{
    p.m_nStyle = 2;
    p.m_nWidth = 0x0103;
    p.m_Color = 0x00112233;
}
void setSample(LogBrush &b)
{
    b.m_nStyle = 1;
    b.m_nHatch = 5;
    b.m_Color = 0x00A0B0C0;
}
void setSample(LogFont &f)
{
    f.m_strFamily = CString("맑은 고딕");
    f.m_nSize = -12;
    f.m_nWeight = 75;
    f.m_nWritingSystem = 8;
    f.m_nFlag = 0x8102;
}

QString fields(const LogPen &p)
{
    return QStringLiteral("%1 %2 %3").arg(p.m_nStyle).arg(p.m_nWidth).arg(p.m_Color, 0, 16);
}
QString fields(const LogBrush &b)
{
    return QStringLiteral("%1 %2 %3").arg(b.m_nStyle).arg(b.m_nHatch).arg(b.m_Color, 0, 16);
}
QString fields(const LogFont &f)
{
    return QStringLiteral("%1 %2 %3 %4 %5")
        .arg(f.m_strFamily.text)
        .arg(f.m_nSize)
        .arg(f.m_nWeight)
        .arg(f.m_nWritingSystem)
        .arg(f.m_nFlag, 0, 16);
}

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

QByteArray contents(CFile &file)
{
    QByteArray bytes(int(file.Size()), '\0');
    file.Seek(0);
    file.Read(bytes.data(), bytes.size());
    file.Seek(0);
    return bytes;
}

} // namespace

class tst_DrawRecords : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { VantorStrings::Init(); }
    void defaults();
    void binaryLayout_data();
    void binaryLayout();
    void truncatedRecord_data();
    void truncatedRecord();
    void penFromRecord();
    void xml_data();
    void xml();
};

void tst_DrawRecords::defaults()
{
    LogPen pen;
    LogBrush brush;
    LogFont font;
    QCOMPARE(fields(pen), QStringLiteral("0 1 0"));
    QCOMPARE(fields(brush), QStringLiteral("0 4 ffffff"));
    QCOMPARE(fields(font), QStringLiteral("Arial 10 0 0 0"));
}

void tst_DrawRecords::binaryLayout_data()
{
    QTest::addColumn<Record>("record");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("LogPen: style, width, colour")
        << Pen << QByteArray::fromHex("0200 0301 33221100");
    QTest::newRow("LogBrush: style, hatch, colour")
        << Brush << QByteArray::fromHex("0100 0500 c0b0a000");
    QTest::newRow("LogFont: family, size, weight, writing system, flag")
        << Font
        << QByteArray::fromHex("0d000000") + QByteArray("맑은 고딕") +
            QByteArray::fromHex("f4ffffff 4b 08 0281");
}

void tst_DrawRecords::binaryLayout()
{
    QFETCH(Record, record);
    QFETCH(QByteArray, bytes);
    visit(record, [&](auto &sample) {
        setSample(sample);
        CFile file;
        QVERIFY(file.Open(CString(), 2));
        QVERIFY(sample.Write(file));
        QCOMPARE(contents(file).toHex(' '), bytes.toHex(' '));
        std::decay_t<decltype(sample)> back;
        QVERIFY(back.Read(file));
        QCOMPARE(fields(back), fields(sample));
    });
}

void tst_DrawRecords::truncatedRecord_data()
{
    QTest::addColumn<Record>("record");
    QTest::addColumn<int>("keep");

    for (int keep : {0, 1, 2, 4, 7})
        QTest::addRow("LogPen, %d of 8 bytes", keep) << Pen << keep;
    QTest::newRow("LogBrush, 6 of 8 bytes") << Brush << 6;
    // Family of 13 bytes: 4 + 13, then 4 + 1 + 1 + 2.
    for (int keep : {3, 10, 17, 20, 22, 24})
        QTest::addRow("LogFont, %d of 25 bytes", keep) << Font << keep;
}

void tst_DrawRecords::truncatedRecord()
{
    QFETCH(Record, record);
    QFETCH(int, keep);
    visit(record, [&](auto &record) {
        setSample(record);
        CFile whole;
        QVERIFY(whole.Open(CString(), 2));
        record.Write(whole);
        QByteArray cut = contents(whole).left(keep);
        CFile file;
        QVERIFY(file.Open(CString(), 2));
        file.Write(cut.data(), cut.size());
        file.Seek(0);
        std::decay_t<decltype(record)> back;
        const QString before = fields(back);
        QVERIFY(!back.Read(file));
        QCOMPARE(fields(back), before);
    });
}

void tst_DrawRecords::penFromRecord()
{
    LogPen record;
    setSample(record);
    record.m_nWidth = 3;
    CPen pen;
    QVERIFY(pen.CreatePenIndirect(&record));
    QCOMPARE(pen.style(), Qt::DashLine);
    QCOMPARE(pen.width(), 3);
    QCOMPARE(pen.color(), QColor(0x33, 0x22, 0x11));
    QVERIFY(!pen.CreatePenIndirect(nullptr));
    QCOMPARE(pen.width(), 3);
}

void tst_DrawRecords::xml_data()
{
    QTest::addColumn<Record>("record");
    QTest::addColumn<QByteArray>("body");

    QTest::newRow("LogPen in its own element")
        << Pen
        << QByteArray("\t\t<LogPen>\n"
                      "\t\t\t<LogPenStyle>2</LogPenStyle>\n"
                      "\t\t\t<LogPenWidth>259</LogPenWidth>\n"
                      "\t\t\t<LogPenColor>1122867</LogPenColor>\n"
                      "\t\t</LogPen>\n");
    QTest::newRow("LogBrush, colour before hatch") << Brush
                                                   << QByteArray("\t\t<Style>1</Style>\n"
                                                                 "\t\t<Color>10531008</Color>\n"
                                                                 "\t\t<Hatch>5</Hatch>\n");
    QTest::newRow("LogFont") << Font
                             << QByteArray("\t\t<Family>맑은 고딕</Family>\n"
                                           "\t\t<Size>-12</Size>\n"
                                           "\t\t<Weight>75</Weight>\n"
                                           "\t\t<WritingSystem>8</WritingSystem>\n"
                                           "\t\t<Flag>33026</Flag>\n");
}

void tst_DrawRecords::xml()
{
    QFETCH(Record, record);
    QFETCH(QByteArray, body);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QByteArray path = dir.filePath(QStringLiteral("style.xml")).toLocal8Bit();
    CXmlEx xml;
    xml.Create("Drawing");
    std::unique_ptr<CXmlNode> item(xml.CreateNode(xml.m_Xml.GetRoot(), "Item"));
    visit(record, [&](auto &sample) {
        setSample(sample);
        sample.WriteXml(xml, item.get());
        sample.WriteXml(xml, nullptr); // nowhere to go: ignored
    });
    QVERIFY(!item->m_pLastChild); // no node of ours is left behind
    xml.m_Xml.SaveWithFormatted(path.constData());

    QFile file(QString::fromLocal8Bit(path));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()),
             QString::fromUtf8("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n"
                               "<Drawing>\n\t<Item>\n" +
                               body + "\t</Item>\n</Drawing>\n"));

    QProcess lint;
    lint.start(QStringLiteral("xmllint"), {QStringLiteral("--noout"), file.fileName()});
    QVERIFY2(lint.waitForFinished(), "xmllint (libxml2-utils) is needed");
    QCOMPARE(lint.exitCode(), 0);
    QCOMPARE(lint.readAllStandardError(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_DrawRecords)
#include "tst_drawrecords.moc"
