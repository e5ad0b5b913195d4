// SPDX-License-Identifier: MIT
// The server-independent side of SqlDB: time texts and SQL date-time literals, table names,
// kind names, the administrator rule, and what a closed object or an unknown kind does.
#include "../foundation/timezonescope.h"
#include "LogRecorder.h"

#include <CStringList.h>
#include <SqlDB.h>
#include <SystemTime.h>

#include <QDateTime>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QtTest>

class SqlDBProbe : public SqlDB
{
public:
    bool hasHandle() const { return m_pDatabase != nullptr; }
};

class tst_SqlDialect : public QObject
{
    Q_OBJECT

    static qint64 utc(int y, int mo, int d, int h, int mi, int s)
    {
        return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::UTC).toMSecsSinceEpoch();
    }

private slots:
    void initTestCase()
    {
        LogRecorder::install();
        useTimeZone("KST-9");
    }
    void cleanup() { LogRecorder::take(); }

    void timeString_data()
    {
        QTest::addColumn<int>("year");
        QTest::addColumn<int>("month");
        QTest::addColumn<int>("day");
        QTest::addColumn<int>("hour");
        QTest::addColumn<int>("minute");
        QTest::addColumn<int>("second");
        QTest::addColumn<QString>("text");
        QTest::newRow("padded") << 2024 << 3 << 5 << 7 << 8 << 9 << "2024-03-05 07:08:09";
        QTest::newRow("short year") << 987 << 12 << 31 << 23 << 59 << 58 << "0987-12-31 23:59:58";
    }
    void timeString()
    {
        QFETCH(int, year);
        QFETCH(int, month);
        QFETCH(int, day);
        QFETCH(int, hour);
        QFETCH(int, minute);
        QFETCH(int, second);
        QFETCH(QString, text);
        SYSTEMTIME st {};
        st.wYear = WORD(year);
        st.wMonth = WORD(month);
        st.wDay = WORD(day);
        st.wHour = WORD(hour);
        st.wMinute = WORD(minute);
        st.wSecond = WORD(second);
        st.wMilliseconds = 999;
        st.wDayOfWeek = 3;
        QCOMPARE(SqlDB::GetTimeString(st).text, text);
    }

    void timeStringOfValue()
    {
        // KST-9: nine hours east of UTC.
        const long long t = utc(2024, 3, 5, 7, 8, 9) + 500;
        QCOMPARE(SqlDB::GetTimeString(t, false).text, QStringLiteral("2024-03-05 07:08:09"));
        QCOMPARE(SqlDB::GetTimeString(t, true).text, QStringLiteral("2024-03-05 16:08:09"));
        QCOMPARE(SqlDB::GetSqlTime(0, t).text,
                 QStringLiteral("TO_DATE('2024-03-05 07:08:09','YYYY/MM/DD HH24:MI:SS')"));
        // Now, in UTC.
        const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
        const QDateTime now = QDateTime::fromString(SqlDB::GetTimeString().text,
                                                    QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        QVERIFY(now.isValid());
        QDateTime asUtc(now.date(), now.time(), Qt::UTC);
        QVERIFY2(asUtc >= before && asUtc <= before.addSecs(3), qPrintable(now.toString()));
    }

    void rdbTime_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("value");
        const qint64 base = utc(2024, 3, 5, 7, 8, 0);
        QTest::newRow("seconds read at the colon") << "2024-03-05 07:08:09" << base;
        QTest::newRow("blanks around") << "  2024-03-05 07:08:59\t " << base;
        QTest::newRow("other separators") << "2024/03/05T07.08.30" << base;
        QTest::newRow("13 characters") << "2024-03-05 07" << qint64(0);
        QTest::newRow("13 after trimming") << "   2024-03-05 07   " << qint64(0);
        QTest::newRow("14 characters, minute past the end")
            << "2024-03-05 07:" << utc(2024, 3, 5, 7, 0, 0);
        QTest::newRow("non-digit hour") << "2024-03-05 ab:08:09" << utc(2024, 3, 5, 0, 8, 0);
        QTest::newRow("leading digit only") << "2024-03-05 7x:08:09" << utc(2024, 3, 5, 7, 8, 0);
        QTest::newRow("blank before digit") << "2024- 3-05 07:08:09" << base;
    }
    void rdbTime()
    {
        QFETCH(QString, text);
        QFETCH(qint64, value);
        QCOMPARE(SqlDB::GetRDBTime(CString(text)), value);
    }

    void sqlTime_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("sql");
        const QString str =
            QStringLiteral("STR_TO_DATE('2024-03-05 07:08:09','%Y-%m-%d %H:%i:%S')");
        QTest::newRow("Oracle") << 0 << "TO_DATE('2024-03-05 07:08:09','YYYY/MM/DD HH24:MI:SS')";
        QTest::newRow("MariaDB") << 1 << str;
        QTest::newRow("MS SQL(ODBC) is MariaDB's") << 2 << str;
        QTest::newRow("ODBC is SQL Server's") << 3 << "CONVERT (DATETIME, '2024-03-05 07:08:09')";
        QTest::newRow("PostgreSQL") << 4 << str;
        QTest::newRow("unknown") << 9 << str;
        QTest::newRow("negative") << -1 << str;
    }
    void sqlTime()
    {
        QFETCH(int, kind);
        QFETCH(QString, sql);
        QCOMPARE(SqlDB::GetSqlTime(kind, CString("2024-03-05 07:08:09")).text, sql);
    }

    void tableName_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("schema");
        QTest::addColumn<QString>("name");
        for (int kind = 0; kind <= 5; ++kind) {
            const bool qualified = kind == 1 || kind == 2 || kind == 4;
            QTest::addRow("kind %d with schema", kind)
                << kind << "S" << (qualified ? "S.T1" : "T1");
            QTest::addRow("kind %d without schema", kind) << kind << ""
                                                          << "T1";
        }
    }
    void tableName()
    {
        QFETCH(int, kind);
        QFETCH(QString, schema);
        QFETCH(QString, name);
        QCOMPARE(SqlDB::GetTableName(kind, CString("T1"), CString(schema)).text, name);
    }

    void databaseKind_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("kind");
        QTest::newRow("Oracle") << "Oracle" << 0;
        QTest::newRow("MariaDB") << "MariaDB" << 1;
        QTest::newRow("MS SQL(ODBC)") << "MS SQL(ODBC)" << 2;
        QTest::newRow("ODBC") << "ODBC" << 3;
        QTest::newRow("PostgreSQL is not looked at") << "PostgreSQL" << 0;
        QTest::newRow("lower case") << "mariadb" << 0;
        QTest::newRow("trailing blank") << "ODBC " << 0;
        QTest::newRow("empty") << "" << 0;
    }
    void databaseKind()
    {
        QFETCH(QString, name);
        QFETCH(int, kind);
        QCOMPARE(SqlDB::GetDatabaseKind(CString(name)), kind);
    }

    void isDBA_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<bool>("dba");
        QTest::newRow("MariaDB root") << 1 << QByteArray("root") << true;
        QTest::newRow("MariaDB Root") << 1 << QByteArray("Root") << false;
        QTest::newRow("MariaDB root with blank") << 1 << QByteArray("root ") << false;
        QTest::newRow("PostgreSQL root") << 4 << QByteArray("root") << false;
        QTest::newRow("ODBC root") << 2 << QByteArray("root") << false;
        QTest::newRow("Oracle, not connected") << 0 << QByteArray("root") << false;
    }
    void isDBA()
    {
        QFETCH(int, kind);
        QFETCH(QByteArray, user);
        QFETCH(bool, dba);
        SqlDB db;
        QCOMPARE(db.IsDBA(kind, user.constData()), dba);
        QVERIFY(LogRecorder::take().isEmpty());
    }

    void closedObject()
    {
        SqlDBProbe db;
        QList<QVariant> rows {QVariant(1)};
        CStringList list;
        list.AddTail(CString("kept"));
        QVERIFY(!db.IsOpened());
        QVERIFY(!db.Execute("select 1"));
        QVERIFY(!db.Execute("select 1", rows));
        QCOMPARE(rows.size(), 1);
        QVERIFY(!db.GetTableList(4, CString(), list));
        QVERIFY(!db.GetDatabaseList(1, list));
        QVERIFY(!db.GetTableList(7, CString(), list));
        QCOMPARE(list.GetCount(), 1);
        QVERIFY(!db.IsExistTable(1, CString(), CString("kept")));
        QVERIFY(!db.IsExistDatabase(1, "kept"));
        QCOMPARE(LogRecorder::take(), QString());
        db.Disconnect();
        db.Disconnect();
        QVERIFY(!db.hasHandle());
    }

    void unknownKindTouchesNothing_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("5") << 5;
        QTest::newRow("-1") << -1;
    }
    void unknownKindTouchesNothing()
    {
        QFETCH(int, kind);
        SqlDBProbe db;
        const int next = SqlDB::m_nConnectionID;
        const QStringList names = QSqlDatabase::connectionNames();
        QVERIFY(!db.Connect(kind, "127.0.0.1", 5432, "x", "u", "p"));
        SqlInfo info;
        info.nKind = kind;
        QVERIFY(!db.Connect(info));
        QCOMPARE(SqlDB::m_nConnectionID, next);
        QCOMPARE(QSqlDatabase::connectionNames(), names);
        QVERIFY(!db.hasHandle());
        QCOMPARE(LogRecorder::take(), QString());
    }
};

QTEST_MAIN(tst_SqlDialect)
#include "tst_sqldialect.moc"
