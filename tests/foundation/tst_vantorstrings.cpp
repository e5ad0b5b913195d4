// SPDX-License-Identifier: MIT
#include "VantorStrings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTranslator>
#include <QtTest>

// Translates only in the library's own context: "English" to "Korean", anything else to "[text]".
class FakeTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        const QString t = QString::fromUtf8(text);
        return qstrcmp(context, "VantorStrings") != 0 ? QString()
            : t == QLatin1String("English")           ? QStringLiteral("Korean")
                                                      : QLatin1Char('[') + t + QLatin1Char(']');
    }
    bool isEmpty() const override { return false; }
};

// Counts the runs of the event loop: each delivered event posts the next, which the same
// processEvents() call leaves for the next one.
class EventCounter : public QObject
{
public:
    int count = 0;
    bool event(QEvent *e) override
    {
        ++count;
        QCoreApplication::postEvent(this, new QEvent(e->type()));
        return true;
    }
};

class tst_VantorStrings : public QObject
{
    Q_OBJECT
private slots:
    void stateBeforeInitAndAfter();
    void language_data();
    void language();
    void peekAndSleep_data();
    void peekAndSleep();
};

void tst_VantorStrings::stateBeforeInitAndAfter()
{
    QCOMPARE(GetAppName(), QStringLiteral("Designer"));
    QCOMPARE(GetLanguage(), 1); // Language is empty before Init()
    const QString appBefore = QCoreApplication::applicationName();
    SetAppName("수위 감시");
    QCOMPARE(GetAppName(), QStringLiteral("수위 감시"));
    QCOMPARE(QCoreApplication::applicationName(), appBefore);
    SetAppName(nullptr);
    QCOMPARE(GetAppName(), QString());

    VantorStrings::Init();
    QCOMPARE(VantorStrings::Language.text, QStringLiteral("English"));
    FakeTranslator translator; // the values are taken when Init() runs
    QCoreApplication::installTranslator(&translator);
    VantorStrings::Init();
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(IsKorean());
    QCOMPARE(VantorStrings::InitFontName.text, QStringLiteral("[Arial]")); // in its own context
}

void tst_VantorStrings::language_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("expected");
    QTest::addColumn<bool>("korean");
    QTest::newRow("English") << QStringLiteral("English") << 0 << false;
    QTest::newRow("Chinese") << QStringLiteral("Chinese") << 2 << false;
    QTest::newRow("Korean") << QStringLiteral("Korean") << 1 << true;
    QTest::newRow("lower-case english") << QStringLiteral("english") << 1 << false;
    QTest::newRow("other") << QStringLiteral("Japanese") << 1 << false;
}

void tst_VantorStrings::language()
{
    QFETCH(QString, language);
    QFETCH(int, expected);
    QFETCH(bool, korean);
    VantorStrings::Language = CString(language);
    QCOMPARE(GetLanguage(), expected);
    QCOMPARE(IsKorean(), korean);
}

// One event-loop run, then 50 ms asleep, ms / 50 times (at least once); Sleep runs none.
void tst_VantorStrings::peekAndSleep_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<int>("rounds");
    QTest::newRow("Sleep alone") << -1 << 0;
    QTest::newRow("0") << 0 << 1;
    QTest::newRow("50") << 50 << 1;
    QTest::newRow("100") << 100 << 2;
    QTest::newRow("149") << 149 << 2;
    QTest::newRow("150") << 150 << 3;
}

void tst_VantorStrings::peekAndSleep()
{
    QFETCH(int, milliseconds);
    QFETCH(int, rounds);
    EventCounter counter;
    QCoreApplication::postEvent(&counter, new QEvent(QEvent::User));
    QElapsedTimer timer;
    timer.start();
    if (milliseconds == -1)
        Sleep(60);
    else
        PeekAndSleep(milliseconds);
    QCOMPARE(counter.count, rounds);
    QVERIFY(timer.elapsed() >= qMax(1, rounds) * 50 - 1);
    QCoreApplication::removePostedEvents(&counter);
}

QTEST_GUILESS_MAIN(tst_VantorStrings)
#include "tst_vantorstrings.moc"
