// SPDX-License-Identifier: MIT
#include "Console.h"
#include "PrintMessage.h"

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>
#include <QTextBlock>
#include <QtTest>

#include <utility>

class tst_Console : public QObject
{
    Q_OBJECT

private slots:
    void putDataAndMouse()
    {
        Console console;
        console.resize(300, 200);
        for (const QByteArray &data :
             {QByteArray("ab\n"), QByteArray("A\0B", 3), QByteArray(), QByteArray("\xe9\xb0")})
            console.putData(data);
        // Clicks on the first line neither move the insertion point nor select.
        QTest::mouseClick(console.viewport(), Qt::LeftButton, {}, QPoint(4, 4));
        QTest::mouseDClick(console.viewport(), Qt::LeftButton, {}, QPoint(4, 4));
        QVERIFY(!console.textCursor().hasSelection());
        console.putData("!");
        // A zero byte ends its chunk; bytes are Latin-1.
        QCOMPARE(console.toPlainText(), QString::fromUtf8("ab\nAé°!"));
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
            << (int(Qt::CTRL) | int(Qt::Key_S)) << true << 0 << L {""} << "ab" << false;
        QTest::newRow("plain S") << int(Qt::Key_S) << true << 7 << L() << "ab" << false;
        QTest::newRow("Enter") << int(Qt::Key_Return) << false << 1 << L {"\r"} << "ab" << false;
        QTest::newRow("Backspace") << int(Qt::Key_Backspace) << true << 7 << L() << "ab" << false;
        QTest::newRow("plain C") << int(Qt::Key_C) << true << 7 << L() << "ab" << true;
        QTest::newRow("Control+C")
            << (int(Qt::CTRL) | int(Qt::Key_C)) << true << 1 << L {""} << "ab" << true;
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
        QCOMPARE(std::exchange(ExternPrintMessageFlag, 1), flag);
        QByteArrayList got;
        for (const QList<QVariant> &call : qAsConst(spy))
            got << call.at(0).toByteArray();
        QCOMPARE(got, sent);
        QCOMPARE(console.toPlainText(), shown);
        QCOMPARE(QApplication::clipboard()->text(), copied ? shown : QStringLiteral("before"));
        QVERIFY(!console.textCursor().hasSelection());
        console.putData("!"); // still at the end, also after a copy
        QCOMPARE(console.toPlainText(), shown + '!');
    }

    void oldestLinesGo()
    {
        Console console;
        QByteArray lines;
        for (int i = 0; i < 100005; ++i)
            lines += QByteArray::number(i) + '\n';
        console.putData(lines);
        QCOMPARE(console.document()->blockCount(), 100000);
        QCOMPARE(console.document()->firstBlock().text(), QStringLiteral("6"));
    }
};

QTEST_MAIN(tst_Console)
#include "tst_console.moc"
