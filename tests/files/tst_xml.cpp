#include <CXmlEx.h>

#include <QtTest>

#include <functional>
#include <memory>
#include <vector>

using namespace TreeXml;

typedef std::function<void(CXmlNode *)> Setter;
Q_DECLARE_METATYPE(Setter)

static const QByteArray declaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n";

class tst_Xml : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(m_dir.isValid()); }
    void cleanup() { m_nodes.clear(); }
    void setValue_data();
    void setValue();
    void treeShape();
    void indentation_data();
    void indentation();
    void saveEndsDocument();

private:
    CXmlNode *keep(CXmlNode *node)
    {
        m_nodes.emplace_back(node);
        return node;
    }
    // Saves, checks the file with xmllint (unless it holds the declaration alone), returns it.
    QByteArray save(CXmlEx &xml, const char *name)
    {
        const QString file = m_dir.filePath(QLatin1String(name));
        xml.m_Xml.SaveWithFormatted(file.toLatin1().constData());
        QFile f(file);
        if (!f.open(QIODevice::ReadOnly))
            return QByteArray();
        const QByteArray content = f.readAll();
        if (content != declaration &&
            QProcess::execute(QStringLiteral("xmllint"), {QStringLiteral("--noout"), file}))
            return "xmllint rejected: " + content;
        return content;
    }
    std::vector<std::unique_ptr<CXmlNode>> m_nodes;
    QTemporaryDir m_dir;
};

void tst_Xml::setValue_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QString>("text");
    QTest::newRow("char gives its code") << Setter([](CXmlNode *n) { n->SetValue('A'); }) << "65";
    QTest::newRow("unsigned char")
        << Setter([](CXmlNode *n) { n->SetValue((unsigned char)200); }) << "200";
    QTest::newRow("bool") << Setter([](CXmlNode *n) { n->SetValue(true); }) << "1";
    QTest::newRow("short") << Setter([](CXmlNode *n) { n->SetValue(short(-32768)); }) << "-32768";
    QTest::newRow("unsigned int") << Setter([](CXmlNode *n) { n->SetValue(4294967295u); })
                                  << "4294967295";
    QTest::newRow("long is not cut to 32 bits")
        << Setter([](CXmlNode *n) { n->SetValue(-5000000000L); }) << "-5000000000";
    QTest::newRow("unsigned long long")
        << Setter([](CXmlNode *n) { n->SetValue(18446744073709551615ULL); })
        << "18446744073709551615";
    QTest::newRow("float widened") << Setter([](CXmlNode *n) { n->SetValue(0.1f); }) << "0.100000";
    QTest::newRow("double 2.5") << Setter([](CXmlNode *n) { n->SetValue(2.5); }) << "2.500000";
    QTest::newRow("double rounds")
        << Setter([](CXmlNode *n) { n->SetValue(-1234567.1234567); }) << "-1234567.123457";
    QTest::newRow("double, no exponent")
        << Setter([](CXmlNode *n) { n->SetValue(1e20); }) << "100000000000000000000.000000";
    QTest::newRow("latin-1 text, escaped")
        << Setter([](CXmlNode *n) { n->SetValue("a<b&\xe9"); }) << "a<b&é";
    QTest::newRow("utf-8 string") << Setter([](CXmlNode *n) { n->SetValue(CString("한글")); })
                                  << "한글";
    QTest::newRow("texts append, empty ones add nothing") << Setter([](CXmlNode *n) {
        n->SetValue("x");
        n->SetValue("");
        n->SetValue(CString());
        n->SetValue(7);
    }) << "x7";
}

void tst_Xml::setValue()
{
    QFETCH(Setter, set);
    QFETCH(QString, text);
    CXmlEx xml;
    xml.Create("R");
    set(keep(xml.CreateNode(xml.m_Xml.GetRoot(), "V")));
    set(xml.m_Xml.GetRoot()); // the root node takes no text
    QDomDocument doc;
    const QByteArray content = save(xml, "value.xml");
    QVERIFY2(doc.setContent(content), content);
    QCOMPARE(doc.documentElement().firstChildElement().text(), text);
    QCOMPARE(doc.documentElement().childNodes().count(), 1);
}

void tst_Xml::treeShape()
{
    CXmlEx xml;
    keep(xml.CreateNode(xml.m_Xml.GetRoot(), "BeforeCreate"));
    QCOMPARE(xml.Create("Config", nullptr, nullptr), 1);
    CXmlNode *root = xml.m_Xml.GetRoot();
    keep(xml.CreateNode(root, "Item"))->SetValue(5);
    CXmlNode *a = keep(root->GetChild(xml, "A"));
    CXmlNode *second = keep(root->GetChild(xml, "A"));
    QCOMPARE(root->m_pLastChild, second);
    QVERIFY(!root->HasChildren());
    root->AttachChild(keep(xml.CreateNode(a, "Moved")));
    QCOMPARE(save(xml, "config.xml"),
             declaration + "<Config>\n\t<Item>5</Item>\n\t<A/>\n\t<A/>\n\t<Moved/>\n</Config>\n");
}

void tst_Xml::indentation_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<QByteArray>("indent");
    QTest::newRow("1") << 1 << QByteArray("\t");
    QTest::newRow("10") << 10 << QByteArray(10, '\t');
    QTest::newRow("11 keeps one space") << 11 << " " + QByteArray(10, '\t');
    QTest::newRow("12 keeps two spaces") << 12 << "  " + QByteArray(10, '\t');
}

void tst_Xml::indentation()
{
    QFETCH(int, depth);
    QFETCH(QByteArray, indent);
    CXmlEx xml;
    xml.Create("L");
    CXmlNode *node = xml.m_Xml.GetRoot();
    for (int level = 1; level <= depth; ++level)
        node = keep(node->GetChild(xml, "L"));
    node->SetValue(depth);
    const QList<QByteArray> lines = save(xml, "deep.xml").split('\n');
    QCOMPARE(lines.value(depth + 1), indent + "<L>" + QByteArray::number(depth) + "</L>");
    // Every line up to level 10 is indented by tabs alone, one per level.
    for (int level = 0; level < depth && level <= 10; ++level) {
        QCOMPARE(lines.value(level + 1), QByteArray(level, '\t') + "<L>");
        QCOMPARE(lines.value(2 * depth + 1 - level), QByteArray(level, '\t') + "</L>");
    }
}

void tst_Xml::saveEndsDocument()
{
    CXmlEx xml;
    xml.Create("Config");
    const QByteArray bad = m_dir.filePath(QStringLiteral("no/such/x.xml")).toLatin1();
    xml.m_Xml.SaveWithFormatted(bad.constData()); // cannot open: the document is kept
    CXmlNode *item = keep(xml.CreateNode(xml.m_Xml.GetRoot(), "Item"));
    QCOMPARE(save(xml, "first.xml"), declaration + "<Config>\n\t<Item/>\n</Config>\n");
    item->SetValue(7);
    QCOMPARE(save(xml, "second.xml"), declaration);
    xml.Create("Again");
    QCOMPARE(save(xml, "third.xml"), declaration + "<Again/>\n");
}

QTEST_APPLESS_MAIN(tst_Xml)
#include "tst_xml.moc"
