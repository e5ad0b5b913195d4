// SPDX-License-Identifier: MIT
// Fetching 100,000 rows of 5 columns from a throwaway PostgreSQL server: SqlDB::Execute(sql,
// rows), which builds one column-name map per row, against a plain QSqlQuery loop that only
// reads the values, on the same server in the same run.
#include "DbServers.h"

#include <PrintMessage.h>
#include <SqlDB.h>

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {
const int rowCount = 100000;
const char selectSql[] = "select id, name, value, at, flag from bench";
int pgPort = 0;

void sqlDbExecute(benchmark::State &state)
{
    SqlDB db;
    if (!db.Connect(4, "127.0.0.1", pgPort, "", "vantor", "vantor")) {
        state.SkipWithError("no connection");
        return;
    }
    for (auto _ : state) {
        QList<QVariant> rows;
        db.Execute(selectSql, rows);
        if (rows.size() != rowCount)
            state.SkipWithError("rows missing");
        benchmark::DoNotOptimize(rows);
    }
    state.SetItemsProcessed(state.iterations() * rowCount);
    db.Disconnect();
}

void rawQuery(benchmark::State &state)
{
    {
        QSqlDatabase raw =
            QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("raw"));
        raw.setHostName(QStringLiteral("127.0.0.1"));
        raw.setPort(pgPort);
        raw.setUserName(QStringLiteral("vantor"));
        raw.setPassword(QStringLiteral("vantor"));
        if (!raw.open()) {
            state.SkipWithError("no connection");
        } else {
            for (auto _ : state) {
                QSqlQuery query(raw);
                query.exec(QString::fromLatin1(selectSql));
                int n = 0;
                while (query.next()) {
                    for (int i = 0; i < 5; ++i)
                        benchmark::DoNotOptimize(query.value(i));
                    ++n;
                }
                if (n != rowCount)
                    state.SkipWithError("rows missing");
            }
            state.SetItemsProcessed(state.iterations() * rowCount);
            raw.close();
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("raw"));
}

BENCHMARK(rawQuery)->Unit(benchmark::kMillisecond)->MinTime(3.0);
BENCHMARK(sqlDbExecute)->Unit(benchmark::kMillisecond)->MinTime(3.0);
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    ExternPrintMessageFlag = 0; // the statement log would go to standard output
    QTemporaryDir dir;
    QFile::setPermissions(dir.path(),
                          QFile::permissions(dir.path()) | QFileDevice::ReadOther |
                              QFileDevice::ExeOther);
    DbServer server(QStringLiteral("pg-server.sh"), dir.filePath(QStringLiteral("pg")));
    QString error;
    if (!server.start(&error)) {
        std::fprintf(stderr, "PostgreSQL did not start: %s\n", qPrintable(error));
        return 1;
    }
    pgPort = server.port;
    {
        SqlDB db;
        db.Connect(4, "127.0.0.1", pgPort, "", "vantor", "vantor");
        db.Execute("create table bench as select i as id, 'name ' || i as name, "
                   "i * 0.5::float8 as value, timestamp '2024-01-01' + i * interval '1 second' "
                   "as at, i % 7 as flag from generate_series(1, 100000) i");
        db.Disconnect();
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
