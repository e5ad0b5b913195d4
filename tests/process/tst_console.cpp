#include "Console.h"
#include "PrintMessage.h"

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>
#include <QtTest>

class tst_Console : public QObject
{
    Q_OBJECT

private slots:
    void putData_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("shown");
        QTest::newRow("text") << QByteArray("AB") << "abAB";
        QTest::newRow("stops at zero byte") << QByteArray("A\0B", 3) << "abA";
        QTest::newRow("latin-1") << QByteArray("\xe9\xb0") << QString::fromUtf8("abé°");
        QTest::newRow("empty") << QByteArray() << "ab";
    }

    void putData()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, shown);
        Console console;
        console.putData("ab");
        console.putData(data);
        QCOMPARE(console.toPlainText(), shown);
    }

    void keys_data()
    {
        QTest::addColumn<int>("key"); // with its modifiers
        QTest::addColumn<bool>("echo");
        QTest::addColumn<int>("flag"); // 7: left as it was
        QTest::addColumn<QByteArrayList>("sent");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("copied");
        using L = QByteArrayList;
        QTest::newRow("x") << int(Qt::Key_X) << false << 1 << L {"x"} << "ab" << false;
        QTest::newRow("x, echo") << int(Qt::Key_X) << true << 1 << L {"x"} << "abx" << false;
        // The Control key's own press comes first: an ordinary key without text.
        QTest::newRow("Control+S")
            << int(Qt::CTRL + Qt::Key_S) << true << 0 << L {""} << "ab" << false;
        QTest::newRow("plain S") << int(Qt::Key_S) << true << 7 << L() << "ab" << false;
        QTest::newRow("Enter") << int(Qt::Key_Return) << false << 1 << L {"\r"} << "ab" << false;
        QTest::newRow("Backspace") << int(Qt::Key_Backspace) << true << 7 << L() << "ab" << false;
        QTest::newRow("Left") << int(Qt::Key_Left) << true << 7 << L() << "ab" << false;
        QTest::newRow("plain C") << int(Qt::Key_C) << true << 7 << L() << "ab" << true;
        QTest::newRow("Control+C")
            << int(Qt::CTRL + Qt::Key_C) << true << 1 << L {""} << "ab" << true;
    }

    void keys()
    {
        QFETCH(int, key);
        QFETCH(bool, echo);
        QFETCH(int, flag);
        QFETCH(QByteArrayList, sent);
        QFETCH(QString, shown);
        QFETCH(bool, copied);
        Console console;
        console.setLocalEchoEnabled(echo);
        console.putData("ab");
        QApplication::clipboard()->setText(QStringLiteral("before"));
        QSignalSpy spy(&console, &Console::getData);
        ExternPrintMessageFlag = 7;
        QTest::keyClick(&console, Qt::Key(key & ~Qt::KeyboardModifierMask),
                        Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
        const int flagAfter = ExternPrintMessageFlag;
        ExternPrintMessageFlag = 1;
        QCOMPARE(flagAfter, flag);
        QByteArrayList got;
        for (const QList<QVariant> &call : qAsConst(spy))
            got << call.at(0).toByteArray();
        QCOMPARE(got, sent);
        QCOMPARE(console.toPlainText(), shown);
        QCOMPARE(QApplication::clipboard()->text(), copied ? shown : QStringLiteral("before"));
        QVERIFY(!console.textCursor().hasSelection());
    }

    void mouseKeepsInsertionPoint()
    {
        Console console;
        console.resize(300, 200);
        console.putData("first line\nsecond");
        QTest::mouseClick(console.viewport(), Qt::LeftButton, {}, QPoint(4, 4));
        QTest::mouseDClick(console.viewport(), Qt::LeftButton, {}, QPoint(4, 4));
        QVERIFY(!console.textCursor().hasSelection());
        console.putData("!");
        QCOMPARE(console.toPlainText(), QStringLiteral("first line\nsecond!"));
    }
};

QTEST_MAIN(tst_Console)
#include "tst_console.moc"
