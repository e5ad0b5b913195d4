// SPDX-License-Identifier: MIT
// The Office folders are relative paths on Linux: each case builds its tree under a temporary
// current directory.
#include "Excel.h"

#include <QTemporaryDir>
#include <QtTest>

class tst_Excel : public QObject
{
    Q_OBJECT

private slots:
    void find_data()
    {
        QTest::addColumn<QStringList>("folders"); // each holding an EXCEL.EXE
        QTest::addColumn<QString>("found");
        const QString o = QStringLiteral("C:/Program Files/Microsoft Office/");
        const QString x = QStringLiteral("C:/Program Files (x86)/Microsoft Office/");
        QTest::newRow("nothing installed") << QStringList() << QString();
        QTest::newRow("one level") << QStringList {o + "Office14"} << o + "Office14";
        QTest::newRow("two levels") << QStringList {o + "root/Office16"} << o + "root/Office16";
        QTest::newRow("three levels") << QStringList {o + "root/vfs/Office16"} << QString();
        QTest::newRow("Updates skipped")
            << QStringList {o + "Updates", o + "Updates/Download", o + "root/Updates"} << QString();
        QTest::newRow("updates in lower case") << QStringList {o + "updates"} << o + "updates";
        QTest::newRow("x86 fallback") << QStringList {x + "Office15"} << x + "Office15";
        QTest::newRow("first folder wins") << QStringList {o + "B", x + "A"} << o + "B";
        // Depth first: the second level of A comes before the first level of B.
        QTest::newRow("depth first") << QStringList {o + "B", o + "A/x"} << o + "A/x";
    }

    void find()
    {
        QFETCH(QStringList, folders);
        QFETCH(QString, found);
        QTemporaryDir dir;
        const QString home = QDir::currentPath();
        QVERIFY(QDir::setCurrent(dir.path()));
        for (const QString &folder : qAsConst(folders)) {
            QDir().mkpath(folder);
            QFile(folder + QStringLiteral("/EXCEL.EXE")).open(QIODevice::WriteOnly);
        }
        const QString program = Excel::FindExcelPathFile().text;
        const QString addins = Excel::FindXlaPath().text;
        QDir::setCurrent(home);
        QCOMPARE(program, found.isEmpty() ? QString() : found + QStringLiteral("/EXCEL.EXE"));
        QCOMPARE(addins, found.isEmpty() ? QString() : found + QStringLiteral("/XLSTART/"));
    }
};

QTEST_GUILESS_MAIN(tst_Excel)
#include "tst_excel.moc"
