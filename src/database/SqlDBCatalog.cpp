// SPDX-License-Identifier: MIT
// The per-kind SQL dialect and the catalogue queries of SqlDB.
#include "SqlDB.h"

#include "CStringList.h"
#include "SystemTime.h"
#include "VantorStrings.h"

#include <QSqlDatabase>

#include <cstdlib>

namespace {
// Kept byte for byte, blanks included: it is the text the servers have always received.
const char tablesSql[] = "SELECT TABLE_NAME         FROM INFORMATION_SCHEMA.TABLES        WHERE "
                         "TABLE_TYPE = 'BASE TABLE'";

/// atoi of `count` characters from `pos` (fewer when the text ends first).
int field(const QString &text, int pos, int count)
{
    return std::atoi(text.mid(pos, count).toLatin1().constData());
}
} // namespace

CString SqlDB::GetTimeString(SYSTEMTIME &st)
{
    return CString(QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", st.wYear, st.wMonth, st.wDay,
                                     st.wHour, st.wMinute, st.wSecond));
}

CString SqlDB::GetTimeString(long long t, bool local)
{
    SYSTEMTIME st {};
    FileTimeToSystemTime(&t, &st, local);
    return GetTimeString(st);
}

CString SqlDB::GetTimeString()
{
    return GetTimeString(GetMSecsSinceEpoch(), false);
}

long long SqlDB::GetRDBTime(CString text)
{
    const QString t = text.text.trimmed();
    if (t.size() < 14)
        return 0;
    SYSTEMTIME st {};
    st.wYear = WORD(field(t, 0, 4));
    st.wMonth = WORD(field(t, 5, 2));
    st.wDay = WORD(field(t, 8, 2));
    st.wHour = WORD(field(t, 11, 2));
    st.wMinute = WORD(field(t, 14, 2));
    st.wSecond = WORD(field(t, 16, 2));
    long long value = 0;
    SystemTimeToFileTime(&st, &value, false);
    return value;
}

CString SqlDB::GetSqlTime(int kind, CString text)
{
    const QByteArray t = text.text.toUtf8();
    if (kind == 0)
        return CString(QString::asprintf("TO_DATE('%s','YYYY/MM/DD HH24:MI:SS')", t.constData()));
    if (kind == 3)
        return CString(QString::asprintf("CONVERT (DATETIME, '%s')", t.constData()));
    return CString(QString::asprintf("STR_TO_DATE('%s','%%Y-%%m-%%d %%H:%%i:%%S')", t.constData()));
}

CString SqlDB::GetSqlTime(int kind, long long t)
{
    return GetSqlTime(kind, GetTimeString(t, false));
}

CString SqlDB::GetTableName(int kind, CString table, CString schema)
{
    if ((kind == 1 || kind == 2 || kind == 4) && !schema.IsEmpty())
        return CString(schema.text + QLatin1Char('.') + table.text);
    return table;
}

int SqlDB::GetDatabaseKind(CString name)
{
    for (int kind = 0; kind < 4; ++kind)
        if (name == VantorStrings::RDBKind[kind])
            return kind;
    return 0;
}

bool SqlDB::IsDBA(int kind, const char *user)
{
    if (kind == 0) {
        QList<QVariant> rows;
        Execute("select * from session_roles where ROLE='DBA'", rows);
        return !rows.isEmpty();
    }
    if (kind == 1)
        return user && qstrcmp(user, "root") == 0;
    return false;
}

bool SqlDB::listNames(const QString &sql, const QString &key, CStringList &list)
{
    if (!IsOpened())
        return false;
    QList<QVariant> rows;
    Execute(sql.toLatin1().constData(), rows);
    for (const QVariant &row : qAsConst(rows))
        list.AddTail(CString(row.toMap().value(key).toString()));
    return true;
}

bool SqlDB::GetTableList(int kind, CString schema, CStringList &list)
{
    QString sql = QString::fromLatin1(tablesSql);
    if ((kind == 1 || kind == 2 || kind == 4) && !schema.IsEmpty())
        sql += QStringLiteral(" AND TABLE_SCHEMA='%1'").arg(schema.text);
    switch (kind) {
    case 0:
        return listNames(QStringLiteral("SELECT * from TABS"), QStringLiteral("table_name"), list);
    case 1:
    case 3:
        return listNames(sql, QStringLiteral("TABLE_NAME"), list);
    case 2:
    case 4:
        return listNames(sql, QStringLiteral("table_name"), list);
    default:
        return listNames(QString(), QString(), list);
    }
}

bool SqlDB::GetDatabaseList(int kind, CStringList &list)
{
    switch (kind) {
    case 0:
        return listNames(QStringLiteral("show databases"), QStringLiteral("database"), list);
    case 1:
        return listNames(QStringLiteral("show databases"), QStringLiteral("Database"), list);
    case 2:
        return listNames(QStringLiteral("show databases"), QStringLiteral("database"), list);
    case 3:
        return listNames(QStringLiteral("Select * from sys.databases"), QStringLiteral("name"),
                         list);
    case 4:
        return listNames(QStringLiteral("select SCHEMA_NAME from information_schema.schemata"),
                         QStringLiteral("schema_name"), list);
    default:
        return listNames(QString(), QString(), list);
    }
}

bool SqlDB::IsExistTable(int kind, CString schema, CString table)
{
    CStringList list;
    if (!GetTableList(kind, schema, list))
        return false;
    for (int i = 0; i < list.GetCount(); ++i)
        if (list.GetAt(i) == table)
            return true;
    return false;
}

bool SqlDB::IsExistDatabase(int kind, const char *name)
{
    CStringList list;
    if (!GetDatabaseList(kind, list))
        return false;
    const CString wanted(QString::fromLatin1(name ? name : ""));
    for (int i = 0; i < list.GetCount(); ++i)
        if (list.GetAt(i) == wanted)
            return true;
    return false;
}
