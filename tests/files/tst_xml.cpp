// SPDX-License-Identifier: MIT
#include <CXmlEx.h>
#include <PrintMessage.h>

#include <QtTest>

#include <functional>
#include <memory>
#include <vector>

using namespace TreeXml;

typedef std::function<void(CXmlNode *)> Setter;
Q_DECLARE_METATYPE(Setter)

// Calls SetValue with each value in turn.
template<typename... T>
static Setter set(T... v)
{
    return [=](CXmlNode *n) { (n->SetValue(v), ...); };
}

static const QByteArray declaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n";

class tst_Xml : public QObject
{
    Q_OBJECT

    std::vector<std::unique_ptr<CXmlNode>> m_nodes;
    QTemporaryDir m_dir;
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
        const QByteArray content = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        if (content != declaration &&
            QProcess::execute(QStringLiteral("xmllint"), {QStringLiteral("--noout"), file}))
            return "xmllint rejected: " + content;
        return content;
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void cleanup() { m_nodes.clear(); }

    void setValue_data()
    {
        QTest::addColumn<Setter>("set");
        QTest::addColumn<QByteArray>("text"); // as saved
        const auto row = [](const char *name, const Setter &set, const char *text) {
            QTest::newRow(name) << set << QByteArray(text);
        };
        row("char gives its code", set('A'), "65");
        row("unsigned char", set((unsigned char)200), "200");
        row("bool", set(true), "1");
        row("short", set(short(-32768)), "-32768");
        row("unsigned int", set(4294967295u), "4294967295");
        row("long is not cut to 32 bits", set(-5000000000L), "-5000000000");
        row("unsigned long long", set(18446744073709551615ULL), "18446744073709551615");
        row("float widened", set(0.1f), "0.100000");
        row("double rounds", set(-1234567.1234567), "-1234567.123457");
        row("double, no exponent", set(1e20), "100000000000000000000.000000");
        row("latin-1 text, escaped", set("a<b&\xe9"), "a&lt;b&amp;\xc3\xa9");
        row("utf-8 string", set(CString("한글")), "한글");
        row("texts append, empty ones add nothing", set("x", "", CString(), 7), "x7");
        row("characters XML cannot hold are left out", set("a\x01\x1F\tb"), "a\tb");
        // The indentation rule also turns spaces before a closing tag into tabs.
        row("trailing spaces saved as tabs", set("v  "), "v\t\t");
    }

    void setValue()
    {
        QFETCH(Setter, set);
        QFETCH(QByteArray, text);
        CXmlEx xml;
        xml.Create("R");
        set(keep(xml.CreateNode(xml.m_Xml.GetRoot(), "V")));
        set(xml.m_Xml.GetRoot()); // the root node takes no text
        QCOMPARE(save(xml, "value.xml"), declaration + "<R>\n\t<V>" + text + "</V>\n</R>\n");
    }

    void treeAndSaves()
    {
        CXmlEx xml;
        keep(xml.CreateNode(xml.m_Xml.GetRoot(), "BeforeCreate")); // outside the document
        QCOMPARE(xml.Create("Config", nullptr, nullptr), 1);
        const QByteArray bad = m_dir.filePath(QStringLiteral("no/such/x.xml")).toLatin1();
        xml.m_Xml.SaveWithFormatted(bad.constData()); // cannot open: the document is kept
        CXmlNode *root = xml.m_Xml.GetRoot();
        CXmlNode *item = keep(xml.CreateNode(root, "Item"));
        item->SetValue(5);
        CXmlNode *a = keep(root->GetChild(xml, "A"));
        CXmlNode *second = keep(root->GetChild(xml, "A"));
        QCOMPARE(root->m_pLastChild, second);
        QVERIFY(!root->HasChildren());
        root->AttachChild(keep(xml.CreateNode(a, "Moved")));
        QCOMPARE(save(xml, "config.xml"),
                 declaration +
                     "<Config>\n\t<Item>5</Item>\n\t<A/>\n\t<A/>\n\t<Moved/>\n</Config>\n");
        // A save ends the document: a second one writes the declaration alone.
        item->SetValue(7);
        QCOMPARE(save(xml, "second.xml"), declaration);
        xml.Create("Again");
        QCOMPARE(save(xml, "third.xml"), declaration + "<Again/>\n");
    }

    void elementNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("accepted");
        for (const char *name : {"", "a b", "a<b>", "1a", "-a", "x:y", "a\"b", "a\xD7"})
            QTest::newRow(name) << QByteArray(name) << false; // \xD7: the multiplication sign
        for (const char *name : {"_x", "\xE9t\xE9-1.2", "xmlData"})
            QTest::newRow(name) << QByteArray(name) << true;
    }

    void elementNames()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, accepted);
        static QStringList messages;
        messages.clear();
        SetPrintMessageFunction([](CString text) { messages << text.text; });
        QCOMPARE(CXmlEx().Create(name.constData()), int(accepted));
        CXmlEx xml;
        xml.Create("R");
        CXmlNode *root = xml.m_Xml.GetRoot();
        CXmlNode *made = keep(xml.CreateNode(root, name.constData()));
        made->SetValue(1);
        keep(made->GetChild(xml, "Under"));
        keep(root->GetChild(xml, name.constData()))->SetValue("x");
        keep(root->GetChild(xml, "Ok"))->SetValue(2);
        const QByteArray file = save(xml, "names.xml");
        SetPrintMessageFunction(nullptr);
        const QByteArray utf8 = QString::fromLatin1(name).toUtf8(), open = "<" + utf8;
        const QByteArray expected = accepted
            ? open + ">1<Under/>\n\t</" + utf8 + ">\n\t" + open + ">x</" + utf8 + ">\n\t"
            : QByteArray();
        QCOMPARE(file, declaration + "<R>\n\t" + expected + "<Ok>2</Ok>\n</R>\n");
        // Each refusal is reported once: Create, CreateNode and GetChild.
        QCOMPARE(messages.size(), accepted ? 0 : 3);
        for (const QString &message : messages)
            QVERIFY2(message.contains("\"" + QString::fromLatin1(name) + "\""),
                     qPrintable(message));
    }

    void indentation()
    {
        CXmlEx xml;
        xml.Create("L");
        CXmlNode *node = xml.m_Xml.GetRoot();
        for (int level = 1; level <= 12; ++level)
            node = keep(node->GetChild(xml, "L"));
        node->SetValue(12);
        const QList<QByteArray> lines = save(xml, "deep.xml").split('\n');
        // One tab per level up to 10; below that the ten tabs stay and a space per level goes
        // in front of them.
        for (int level = 0; level <= 10; ++level) {
            QCOMPARE(lines.value(level + 1), QByteArray(level, '\t') + "<L>");
            QCOMPARE(lines.value(25 - level), QByteArray(level, '\t') + "</L>");
        }
        const QByteArray tabs(10, '\t');
        QCOMPARE(lines.mid(12, 3),
                 QList<QByteArray>(
                     {" " + tabs + "<L>", "  " + tabs + "<L>12</L>", " " + tabs + "</L>"}));
    }
};

QTEST_APPLESS_MAIN(tst_Xml)
#include "tst_xml.moc"
