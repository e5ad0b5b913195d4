// SPDX-License-Identifier: MIT
// Databases without a server: the SQLite3 ODBC driver on a file in the tour's folder, reached
// as kind 3 ("ODBC") with a DSN-less connection string. A table is created, readings are
// inserted with time stamps and read back as column-name maps, and the catalogue is listed.
#include "Demo.h"

#include <Vantor.h>

#include <QDir>

static int run(DemoContext &ctx)
{
    const QString file = QDir(ctx.outputDir).filePath(QStringLiteral("readings.db"));
    const QByteArray dsn = "DRIVER={SQLite3};Database=" + QFile::encodeName(file);
    SqlDB db;
    // Every statement goes to the message log (standard output here).
    if (!db.Connect(3, "", 0, dsn.constData(), "", "")) {
        demoSay(QStringLiteral("the SQLite3 ODBC driver is not installed (libsqliteodbc)"));
        return 1;
    }
    db.Execute("create table readings (tag varchar(8), at timestamp, value double)");
    const long long start = SqlDB::GetRDBTime(CString("2026-11-24 08:00:00"));
    for (int i = 0; i < 3; ++i) {
        const CString at = SqlDB::GetTimeString(start + i * 3600 * 1000LL, false);
        const QByteArray sql = QStringLiteral("insert into readings values ('T%1', '%2', %3)")
                                   .arg(i + 1)
                                   .arg(at.text)
                                   .arg(12.5 + i)
                                   .toLatin1();
        db.Execute(sql.constData());
    }

    QList<QVariant> rows;
    if (!db.Execute("select tag, at, value from readings order by at", rows)) {
        db.Disconnect();
        return 1;
    }
    for (const QVariant &row : qAsConst(rows)) {
        const QVariantMap r = row.toMap();
        demoSay(QStringLiteral("   %1  %2  %3")
                    .arg(r.value(QStringLiteral("tag")).toString(),
                         r.value(QStringLiteral("at")).toDateTime().toString(Qt::ISODate))
                    .arg(r.value(QStringLiteral("value")).toDouble()));
    }

    // SQLite has no INFORMATION_SCHEMA: the catalogue statement fails, is reported in the log,
    // and the list stays empty. Its own catalogue answers the same question.
    CStringList tables;
    db.GetTableList(3, CString(), tables);
    demoSay(QStringLiteral("   tables through INFORMATION_SCHEMA: %1").arg(tables.GetCount()));
    rows.clear();
    db.Execute("select name from sqlite_master where type = 'table'", rows);
    for (const QVariant &row : qAsConst(rows))
        demoSay(QStringLiteral("   table %1")
                    .arg(row.toMap().value(QStringLiteral("name")).toString()));
    db.Disconnect();
    return rows.size() == 1 ? 0 : 1;
}

static DemoSection section(65, "Databases (SQLite through ODBC)", run);
