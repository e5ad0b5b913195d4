// SPDX-License-Identifier: MIT
// SqlDB against real peers: PostgreSQL 15 (kind 4, and kind 2 through psqlODBC), MariaDB 10.11
// (kind 1), the SQLite3 ODBC driver on a file (kind 3) and the missing Oracle driver (kind 0).
#include "DbServers.h"
#include "LogRecorder.h"
#include "ModalResponder.h"

#include <CStringList.h>
#include <SqlDB.h>

#include <QDialog>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QSqlDatabase>
#include <QtTest>

#include <atomic>
#include <functional>
#include <memory>

class SqlDBProbe : public SqlDB
{
public:
    QString connectionName() const
    {
        return m_pDatabase ? m_pDatabase->connectionName() : QString();
    }
    QString lastError() const { return m_strLastError.text; }
    QString driver() const { return m_strDriver.text; }
};

/// Runs `work` on a thread of its own.
class Worker : public QThread
{
public:
    explicit Worker(std::function<void()> work)
        : m_work(std::move(work))
    { }
    void run() override { m_work(); }

private:
    std::function<void()> m_work;
};

static QVariantMap firstRow(SqlDB &db, const char *sql)
{
    QList<QVariant> rows;
    db.Execute(sql, rows);
    return rows.isEmpty() ? QVariantMap() : rows.first().toMap();
}

class tst_SqlDB : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<DbServer> m_pg;
    std::unique_ptr<DbServer> m_maria;
    QString m_noServers;

    /// Connects `db` to the named peer with the given kind.
    bool open(SqlDB &db, const QString &target, int kind)
    {
        if (target == QLatin1String("sqlite"))
            return db.Connect(kind, "127.0.0.1", 1, "VantorLite", "", "");
        if (target == QLatin1String("odbc-pg"))
            return db.Connect(kind, "", 0, "VantorPG", "vantor", "vantor");
        if (target == QLatin1String("postgresql"))
            return db.Connect(kind, "127.0.0.1", m_pg->port, "", "vantor", "vantor");
        if (target == QLatin1String("mariadb"))
            return db.Connect(kind, "127.0.0.1", m_maria->port, "", "vantor", "vantor");
        if (target == QLatin1String("mariadb-root"))
            return db.Connect(kind, "127.0.0.1", m_maria->port, "", "root", "rootpw");
        return false;
    }
    bool needsServer(const QString &target) const { return target != QLatin1String("sqlite"); }

#define REQUIRE_SERVERS(target)                                                                    \
    do {                                                                                           \
        if (needsServer(target) && !m_noServers.isEmpty())                                         \
            QSKIP(qPrintable(m_noServers));                                                        \
    } while (0)

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        // The servers run as their own users (postgres, mysql) and must reach their folders.
        QFile::setPermissions(m_dir.path(),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                  QFileDevice::ExeOwner | QFileDevice::ReadOther |
                                  QFileDevice::ExeOther | QFileDevice::ReadGroup |
                                  QFileDevice::ExeGroup);
        LogRecorder::install();
        m_noServers = serversMissing();
        int pgPort = 0;
        if (m_noServers.isEmpty()) {
            QString error;
            m_pg = std::make_unique<DbServer>(QStringLiteral("pg-server.sh"),
                                              m_dir.filePath(QStringLiteral("pg")));
            QVERIFY2(m_pg->start(&error), qPrintable(error));
            m_maria = std::make_unique<DbServer>(QStringLiteral("mariadb-server.sh"),
                                                 m_dir.filePath(QStringLiteral("maria")));
            QVERIFY2(m_maria->start(&error), qPrintable(error));
            pgPort = m_pg->port;
        }
        setUpOdbc(m_dir.path(), m_dir.filePath(QStringLiteral("lite.db")), pgPort);
    }
    void cleanupTestCase()
    {
        m_maria.reset();
        m_pg.reset();
        QCOMPARE(LogRecorder::takeBadWarnings(), QStringList());
    }
    void cleanup()
    {
        LogRecorder::take();
        QCOMPARE(LogRecorder::takeBadWarnings(), QStringList());
    }

    void connectionNames()
    {
        // The first connection of the process is number 0.
        QCOMPARE(SqlDB::m_nConnectionID, 0);
        SqlDBProbe a, failed, c;
        QVERIFY(open(a, QStringLiteral("sqlite"), 3));
        QCOMPARE(a.connectionName(), QStringLiteral("DB_CONNECTION_0"));
        QCOMPARE(a.driver(), QStringLiteral("QODBC"));
        QVERIFY(!failed.Connect(0, "127.0.0.1", 1521, "", "scott", "tiger"));
        QCOMPARE(failed.connectionName(), QStringLiteral("DB_CONNECTION_1"));
        QVERIFY(open(c, QStringLiteral("sqlite"), 3));
        QCOMPARE(c.connectionName(), QStringLiteral("DB_CONNECTION_2"));
        // Connecting an open object changes nothing and uses no number.
        QVERIFY(a.Connect(4, "127.0.0.1", 1, "", "", ""));
        QCOMPARE(a.connectionName(), QStringLiteral("DB_CONNECTION_0"));
        QCOMPARE(a.driver(), QStringLiteral("QODBC"));
        // A retry on the failed object registers a further name; only that one is removed later.
        QVERIFY(open(failed, QStringLiteral("sqlite"), 3));
        QCOMPARE(failed.connectionName(), QStringLiteral("DB_CONNECTION_3"));
        QCOMPARE(SqlDB::m_nConnectionID, 4);
        a.Disconnect();
        failed.Disconnect();
        c.Disconnect();
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList {QStringLiteral("DB_CONNECTION_1")});
        QSqlDatabase::removeDatabase(QStringLiteral("DB_CONNECTION_1"));
    }

    void oracleDriverMissing_data()
    {
        QTest::addColumn<bool>("box");
        QTest::newRow("log") << false;
        QTest::newRow("box") << true;
    }
    void oracleDriverMissing()
    {
        QFETCH(bool, box);
        SqlDBProbe db;
        db.m_bShowMessageBox = box;
        ModalResponder responder([](QWidget *w) { qobject_cast<QDialog *>(w)->accept(); });
        QVERIFY(!db.Connect(0, "127.0.0.1", 1521, "orcl", "scott", "tiger"));
        QVERIFY(!db.IsOpened());
        const QString error = QStringLiteral("Driver not loaded Driver not loaded");
        QCOMPARE(db.lastError(), error);
        if (box) {
            QCOMPARE(responder.shown, 1);
            QCOMPARE(responder.message,
                     QStringLiteral("<html><head/><body><p>Rdb connection error<br/>") + error +
                         QStringLiteral("</p></body></html>"));
            QCOMPARE(LogRecorder::take(), QString());
        } else {
            QCOMPARE(responder.shown, 0);
            QCOMPARE(LogRecorder::take(),
                     QStringLiteral("Rdb connection error\r\n") + error +
                         QStringLiteral("\r\n\r\n"));
        }
        db.Disconnect();
    }

    void serverRefusesLogin()
    {
        REQUIRE_SERVERS(QStringLiteral("postgresql"));
        SqlDBProbe db;
        QVERIFY(!db.Connect(4, "127.0.0.1", m_pg->port, "", "vantor", "wrong"));
        QVERIFY(db.lastError().contains(QLatin1String("password authentication failed")));
        QCOMPARE(LogRecorder::take(),
                 QStringLiteral("Rdb connection error\r\n") + db.lastError() +
                     QStringLiteral("\r\n\r\n"));
        db.Disconnect();
    }

    void rowsKeepDriverTypes_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("columns");
        QTest::addColumn<QStringList>("types");
        // Single-precision columns arrive as double, whichever Qt the library is built with.
        const QStringList common {QStringLiteral("QDateTime"), QStringLiteral("int"),
                                  QStringLiteral("QString"), QStringLiteral("double"),
                                  QStringLiteral("double")};
        QTest::newRow("MariaDB")
            << "mariadb" << 1 << "vantor_db.readings"
            << "id int, name varchar(20), price double, at datetime, ratio float" << common;
        QTest::newRow("PostgreSQL") << "postgresql" << 4 << "public.readings_pg"
                                    << "id integer, name varchar(20), price double precision, "
                                       "at timestamp, ratio real"
                                    << common;
        QTest::newRow("psqlODBC") << "odbc-pg" << 2 << "public.readings_odbc"
                                  << "id integer, name varchar(20), price double precision, "
                                     "at timestamp, ratio real"
                                  << common;
        QTest::newRow("SQLite ODBC")
            << "sqlite" << 3 << "readings"
            << "id integer, name varchar(20), price double, at timestamp, ratio real" << common;
    }
    void rowsKeepDriverTypes()
    {
        QFETCH(QString, target);
        QFETCH(int, kind);
        QFETCH(QString, table);
        QFETCH(QString, columns);
        QFETCH(QStringList, types);
        REQUIRE_SERVERS(target);
        SqlDB db;
        QVERIFY(open(db, target, kind));
        db.Execute(("drop table if exists " + table).toLatin1().constData());
        QVERIFY(db.Execute(QStringLiteral("create table %1 (%2)").arg(table, columns).toLatin1()));
        for (int i = 1; i <= 3; ++i)
            QVERIFY(db.Execute(QStringLiteral("insert into %1 values (%2, 'r%2', %2.5, "
                                              "'2024-03-05 07:08:0%2', %2.25)")
                                   .arg(table)
                                   .arg(i)
                                   .toLatin1()));
        LogRecorder::take();

        QList<QVariant> rows {QStringLiteral("kept")};
        const QByteArray select =
            ("select id, name, price, at, ratio from " + table + " order by id").toLatin1();
        QVERIFY(db.Execute(select.constData(), rows));
        QCOMPARE(LogRecorder::take(), QString::fromLatin1(select) + QStringLiteral("\r\n"));
        QCOMPARE(rows.size(), 4);
        QCOMPARE(rows.first().toString(), QStringLiteral("kept"));
        for (int i = 1; i <= 3; ++i) {
            const QVariantMap row = rows.at(i).toMap();
            QCOMPARE(
                row.keys(),
                (QStringList {QStringLiteral("at"), QStringLiteral("id"), QStringLiteral("name"),
                              QStringLiteral("price"), QStringLiteral("ratio")}));
            QStringList got;
            for (const QVariant &v : row)
                got << QString::fromLatin1(v.typeName());
            QCOMPARE(got, types);
            QCOMPARE(row.value(QStringLiteral("id")).toInt(), i);
            QCOMPARE(row.value(QStringLiteral("name")).toString(), QStringLiteral("r%1").arg(i));
            QCOMPARE(row.value(QStringLiteral("price")).toDouble(), i + 0.5);
            QCOMPARE(row.value(QStringLiteral("ratio")).toString(), QStringLiteral("%1.25").arg(i));
            QCOMPARE(row.value(QStringLiteral("at")).toDateTime(),
                     QDateTime(QDate(2024, 3, 5), QTime(7, 8, i)));
        }
        // A SQL NULL arrives as a null value of the column's type.
        QVERIFY(db.Execute(QStringLiteral("insert into %1 (id) values (4)").arg(table).toLatin1()));
        rows.clear();
        QVERIFY(
            db.Execute(("select name, ratio from " + table + " where id = 4").toLatin1(), rows));
        QCOMPARE(rows.size(), 1);
        for (const QString &column : {QStringLiteral("name"), QStringLiteral("ratio")}) {
            const QVariant value = rows.first().toMap().value(column, QStringLiteral("absent"));
            QVERIFY2(value.isNull(), qPrintable(column));
            QCOMPARE(QString::fromLatin1(value.typeName()), types.at(column == "name" ? 2 : 4));
        }
        db.Execute(("drop table " + table).toLatin1().constData());
        db.Disconnect();
    }

    void sameNameLaterColumnWins()
    {
        SqlDB db;
        QVERIFY(open(db, QStringLiteral("sqlite"), 3));
        const QVariantMap row = firstRow(db, "select 1 as b, 2 as a, 3 as b, 4 as c");
        QCOMPARE(row.size(), 3);
        QCOMPARE(row.value(QStringLiteral("a")).toInt(), 2);
        QCOMPARE(row.value(QStringLiteral("b")).toInt(), 3);
        QCOMPARE(row.value(QStringLiteral("c")).toInt(), 4);
        // A statement without a result set appends nothing.
        QList<QVariant> rows;
        QVERIFY(db.Execute("create table if not exists t_dup (x int)", rows));
        QVERIFY(rows.isEmpty());
        db.Disconnect();
    }

    void statementErrors_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("box");
        QTest::addColumn<QString>("fragment");
        QTest::newRow("MariaDB to the log") << "mariadb" << 1 << false << "vantor_db.no_such_table";
        QTest::newRow("PostgreSQL to the log") << "postgresql" << 4 << false << "no_such_table";
        QTest::newRow("PostgreSQL in a box") << "postgresql" << 4 << true << "no_such_table";
        QTest::newRow("SQLite to the log") << "sqlite" << 3 << false << "no such table";
        QTest::newRow("SQLite in a box") << "sqlite" << 3 << true << "no such table";
    }
    void statementErrors()
    {
        QFETCH(QString, target);
        QFETCH(int, kind);
        QFETCH(bool, box);
        QFETCH(QString, fragment);
        REQUIRE_SERVERS(target);
        SqlDB db;
        QVERIFY(open(db, target, kind));
        db.m_bShowMessageBox = box;
        LogRecorder::take();
        ModalResponder responder([](QWidget *w) { qobject_cast<QDialog *>(w)->accept(); });
        const char *sql = "select * from vantor_db.no_such_table";
        const char *fallback = "select * from no_such_table";
        const char *bad = target == QLatin1String("mariadb") ? sql : fallback;
        QList<QVariant> rows {1, 2};
        QVERIFY(!db.Execute(bad, rows));
        QCOMPARE(rows.size(), 2);
        QString log = LogRecorder::take();
        QVERIFY2(log.startsWith(QString::fromLatin1(bad) + QStringLiteral("\r\n")),
                 qPrintable(log));
        log.remove(0, int(qstrlen(bad)) + 2);
        if (box) {
            QCOMPARE(responder.shown, 1);
            QCOMPARE(log, QString());
            QVERIFY2(responder.message.contains(fragment), qPrintable(responder.message));
            QVERIFY(!responder.message.contains(QLatin1String("Rdb connection error")));
        } else {
            QCOMPARE(responder.shown, 0);
            QVERIFY2(log.contains(fragment) && log.endsWith(QLatin1String("\r\n")),
                     qPrintable(log));
            QVERIFY(!log.contains(QLatin1String("Rdb connection error")));
        }
        // Malformed SQL: the same routing, and the connection stays usable.
        QVERIFY(!db.Execute("selec 1 frm"));
        QVERIFY(db.IsOpened());
        QCOMPARE(firstRow(db, "select 7 as n").value(QStringLiteral("n")).toInt(), 7);
        QVERIFY(!db.Execute(""));
        QList<QVariant> none;
        QVERIFY(!db.Execute("", none));
        db.Disconnect();
    }

    void catalogue_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("schema");
        QTest::addColumn<QString>("listed");   // "cat_a", "" (names come back empty) or "error"
        QTest::addColumn<QString>("database"); // a database listed, or "error"
        QTest::newRow("MariaDB") << "mariadb" << 1 << "vantor_db"
                                 << "cat_a"
                                 << "vantor_db";
        QTest::newRow("PostgreSQL") << "postgresql" << 4 << "public"
                                    << "cat_a"
                                    << "public";
        QTest::newRow("psqlODBC as kind 2") << "odbc-pg" << 2 << "public"
                                            << "cat_a"
                                            << "error";
        QTest::newRow("psqlODBC as kind 3") << "odbc-pg" << 3 << "public"
                                            << ""
                                            << "error";
        QTest::newRow("SQLite as kind 3") << "sqlite" << 3 << ""
                                          << "error"
                                          << "error";
    }
    void catalogue()
    {
        QFETCH(QString, target);
        QFETCH(int, kind);
        QFETCH(QString, schema);
        QFETCH(QString, listed);
        QFETCH(QString, database);
        REQUIRE_SERVERS(target);
        SqlDB db;
        QVERIFY(open(db, target, kind));
        const QString table = SqlDB::GetTableName(kind, CString("cat_a"), CString(schema)).text;
        db.Execute(("drop table if exists " + table).toLatin1().constData());
        QVERIFY(db.Execute(("create table " + table + " (x int)").toLatin1().constData()));
        LogRecorder::take();

        CStringList tables;
        tables.AddTail(CString("before"));
        QVERIFY(db.GetTableList(kind, CString(schema), tables));
        QString log = LogRecorder::take();
        QVERIFY(log.startsWith(QLatin1String(
            "SELECT TABLE_NAME         FROM INFORMATION_SCHEMA.TABLES        WHERE TABLE_TYPE "
            "= 'BASE TABLE'")));
        QCOMPARE(log.contains(QLatin1String("' AND TABLE_SCHEMA='")),
                 !schema.isEmpty() && kind != 3);
        QCOMPARE(tables.GetAt(0).text, QStringLiteral("before"));
        QStringList names;
        for (int i = 1; i < tables.GetCount(); ++i)
            names << tables.GetAt(i).text;
        if (listed == QLatin1String("error")) {
            QCOMPARE(names, QStringList());
            QVERIFY(!db.IsExistTable(kind, CString(schema), CString("cat_a")));
        } else if (listed.isEmpty()) {
            // The column comes back as table_name while this kind reads TABLE_NAME.
            QVERIFY(!names.isEmpty());
            QCOMPARE(names.filter(QRegularExpression(QStringLiteral("."))), QStringList());
            QVERIFY(!db.IsExistTable(kind, CString(schema), CString("cat_a")));
        } else {
            QVERIFY2(names.contains(listed), qPrintable(names.join(QLatin1Char(','))));
            QVERIFY(db.IsExistTable(kind, CString(schema), CString("cat_a")));
            QVERIFY(!db.IsExistTable(kind, CString(schema), CString("CAT_A")));
            QVERIFY(!db.IsExistTable(kind, CString(schema), CString("cat_")));
        }
        LogRecorder::take();

        CStringList dbs;
        QVERIFY(db.GetDatabaseList(kind, dbs));
        if (database == QLatin1String("error")) {
            QCOMPARE(dbs.GetCount(), 0);
            QVERIFY(!LogRecorder::take().isEmpty());
            QVERIFY(!db.IsExistDatabase(kind, "information_schema"));
        } else {
            QVERIFY(dbs.Find(CString(database)));
            QVERIFY(db.IsExistDatabase(kind, database.toLatin1().constData()));
            QVERIFY(db.IsExistDatabase(kind, "information_schema"));
            QVERIFY(!db.IsExistDatabase(kind, database.toUpper().toLatin1().constData()));
        }
        // An unknown kind runs nothing and appends nothing, yet reports an open connection.
        LogRecorder::take();
        CStringList none;
        QVERIFY(db.GetTableList(7, CString(schema), none));
        QVERIFY(db.GetDatabaseList(-1, none));
        QCOMPARE(none.GetCount(), 0);
        QCOMPARE(LogRecorder::take(), QString());
        db.Execute(("drop table " + table).toLatin1().constData());
        db.Disconnect();
    }

    void mariadbRoot()
    {
        REQUIRE_SERVERS(QStringLiteral("mariadb"));
        SqlDB db;
        QVERIFY(open(db, QStringLiteral("mariadb-root"), 1));
        QVERIFY(db.IsDBA(1, "root"));
        QVERIFY(db.IsExistDatabase(1, "mysql"));
        // The MariaDB time literal is understood by MariaDB.
        const QByteArray sql = "select " +
            SqlDB::GetSqlTime(1, CString("2024-03-05 07:08:09")).text.toLatin1() + " as t";
        QCOMPARE(firstRow(db, sql.constData()).value(QStringLiteral("t")).toDateTime(),
                 QDateTime(QDate(2024, 3, 5), QTime(7, 8, 9)));
        db.Disconnect();
    }

    void addressingRules()
    {
        REQUIRE_SERVERS(QStringLiteral("postgresql"));
        // Server kinds never pass a database name: PostgreSQL lands in the user's own database,
        // MariaDB in none.
        SqlDB pg;
        QVERIFY(pg.Connect(4, "127.0.0.1", m_pg->port, "postgres", "vantor", "vantor"));
        QCOMPARE(
            firstRow(pg, "select current_database() as d").value(QStringLiteral("d")).toString(),
            QStringLiteral("vantor"));
        pg.Disconnect();
        SqlDB maria;
        QVERIFY(maria.Connect(1, "127.0.0.1", m_maria->port, "vantor_db", "vantor", "vantor"));
        const QVariantMap row = firstRow(maria, "select database() as d");
        QVERIFY(row.contains(QStringLiteral("d")) && row.value(QStringLiteral("d")).isNull());
        maria.Disconnect();

        // A local record loses its server name and connects without host and port: the
        // PostgreSQL client library then takes its socket from the environment.
        qputenv("PGHOST", QFile::encodeName(m_dir.filePath(QStringLiteral("pg/run"))));
        qputenv("PGPORT", QByteArray::number(m_pg->port));
        SqlInfo info;
        info.nKind = 4;
        info.bRemote = 0;
        info.strServer = CString("127.0.0.2");
        info.nPort = 1;
        info.strUser = CString("vantor");
        SqlDB local;
        const bool ok = local.Connect(info);
        qunsetenv("PGHOST");
        qunsetenv("PGPORT");
        QVERIFY(ok);
        QCOMPARE(info.strServer.text, QString());
        local.Disconnect();
        // A remote record keeps it.
        info.bRemote = 1;
        info.strServer = CString("127.0.0.1");
        info.nPort = m_pg->port;
        info.strPassword = CString("vantor");
        QVERIFY(local.Connect(info));
        QCOMPARE(info.strServer.text, QStringLiteral("127.0.0.1"));
        local.Disconnect();
    }

    void disconnect()
    {
        SqlDBProbe db;
        QVERIFY(open(db, QStringLiteral("sqlite"), 3));
        const QString name = db.connectionName();
        QVERIFY(QSqlDatabase::contains(name));
        db.Disconnect();
        QVERIFY(!QSqlDatabase::contains(name));
        QVERIFY(!db.IsOpened());
        QVERIFY(!db.Execute("select 1"));
        db.Disconnect();
        QVERIFY(!db.IsOpened());
        // The object connects again afterwards.
        QVERIFY(open(db, QStringLiteral("sqlite"), 3));
        QVERIFY(db.IsOpened());
        db.Disconnect();
    }

    void disconnectCommits()
    {
        REQUIRE_SERVERS(QStringLiteral("postgresql"));
        SqlDBProbe db;
        QVERIFY(open(db, QStringLiteral("postgresql"), 4));
        QVERIFY(db.Execute("create table if not exists tx (x int)"));
        QVERIFY(db.Execute("delete from tx"));
        // A transaction the application opened itself is committed by Disconnect.
        QVERIFY(QSqlDatabase::database(db.connectionName(), false).transaction());
        QVERIFY(db.Execute("insert into tx values (1)"));
        db.Disconnect();
        QVERIFY(open(db, QStringLiteral("postgresql"), 4));
        QCOMPARE(firstRow(db, "select count(*) as n from tx").value(QStringLiteral("n")).toInt(),
                 1);
        db.Disconnect();
    }

    void serverGoesAway_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("signal");
        QTest::newRow("PostgreSQL") << "postgresql" << 4 << int(SIGINT);
        QTest::newRow("MariaDB") << "mariadb" << 1 << int(SIGTERM);
    }
    void serverGoesAway()
    {
        QFETCH(QString, target);
        QFETCH(int, kind);
        QFETCH(int, signal);
        REQUIRE_SERVERS(target);
        DbServer *server = target == QLatin1String("postgresql") ? m_pg.get() : m_maria.get();
        SqlDB db;
        QVERIFY(open(db, target, kind));
        QVERIFY(db.Execute("select 1"));
        QVERIFY(server->killAndWait(signal));
        LogRecorder::take();
        QList<QVariant> rows;
        QVERIFY(!db.Execute("select 2 as n", rows));
        QVERIFY(rows.isEmpty());
        const QString log = LogRecorder::take();
        QVERIFY2(log.startsWith(QLatin1String("select 2 as n\r\n")) && log.size() > 20,
                 qPrintable(log));

        QString error;
        QVERIFY2(server->start(&error), qPrintable(error));
        db.Disconnect();
        QVERIFY(open(db, target, kind));
        QCOMPARE(firstRow(db, "select 3 as n").value(QStringLiteral("n")).toInt(), 3);
        db.Disconnect();
    }

    void twoThreads()
    {
        REQUIRE_SERVERS(QStringLiteral("postgresql"));
        {
            SqlDB setup;
            QVERIFY(open(setup, QStringLiteral("postgresql"), 4));
            QVERIFY(setup.Execute("drop table if exists threads"));
            QVERIFY(setup.Execute("create table threads (who int, n int)"));
            setup.Disconnect();
        }
        std::atomic<int> failures {0};
        auto work = [&](int who, const QString &target, int kind) {
            return [&, who, target, kind] {
                SqlDB db;
                if (!open(db, target, kind)) {
                    ++failures;
                    return;
                }
                for (int n = 0; n < 100; ++n) {
                    const QByteArray sql = QByteArray("insert into threads values (") +
                        QByteArray::number(who) + ", " + QByteArray::number(n) + ")";
                    QList<QVariant> rows;
                    if (!db.Execute(sql.constData()) || !db.Execute("select 1 as one", rows) ||
                        rows.size() != 1)
                        ++failures;
                }
                db.Disconnect();
            };
        };
        Worker a(work(1, QStringLiteral("postgresql"), 4));
        Worker b(work(2, QStringLiteral("odbc-pg"), 2));
        a.start();
        b.start();
        QVERIFY(a.wait(120000));
        QVERIFY(b.wait(120000));
        QCOMPARE(failures.load(), 0);
        SqlDB check;
        QVERIFY(open(check, QStringLiteral("postgresql"), 4));
        QCOMPARE(
            firstRow(check, "select count(*) as n from threads").value(QStringLiteral("n")).toInt(),
            200);
        check.Disconnect();
    }

    void statementsWaitForTheMutex()
    {
        QSemaphore connected, go;
        std::atomic<bool> done {false};
        std::atomic<bool> ok {false};
        Worker worker([&] {
            SqlDB db;
            const bool opened = open(db, QStringLiteral("sqlite"), 3);
            connected.release();
            go.acquire();
            ok = opened && db.Execute("select 1");
            done = true;
            db.Disconnect();
        });
        worker.start();
        QVERIFY(connected.tryAcquire(1, 30000));
        SqlDB::m_Mutex.lock();
        go.release();
        QTest::qWait(300);
        const bool ranWhileLocked = done;
        SqlDB::m_Mutex.unlock();
        QVERIFY(worker.wait(30000));
        QVERIFY(!ranWhileLocked);
        QVERIFY(ok);
    }
};

QTEST_MAIN(tst_SqlDB)
#include "tst_sqldb.moc"
