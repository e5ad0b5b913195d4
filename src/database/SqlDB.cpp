// SPDX-License-Identifier: MIT
#include "SqlDB.h"

#include "AfxMessageBox.h"
#include "MutexLocker_p.h"
#include "PrintMessage.h"
#include "QtCompat_p.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <vector>

QMutex SqlDB::m_Mutex;
int SqlDB::m_nConnectionID = 0;

namespace {
QString latin1(const char *text)
{
    return QString::fromLatin1(text ? text : "");
}

const char *kindDriver(int kind)
{
    switch (kind) {
    case 0:
        return "QOCI";
    case 1:
        return "QMYSQL";
    case 2:
    case 3:
        return "QODBC";
    case 4:
        return "QPSQL";
    default:
        return nullptr;
    }
}
} // namespace

SqlDB::SqlDB()
    : m_bShowMessageBox(false)
    , m_pDatabase(nullptr)
{ }

SqlDB::~SqlDB() = default;

bool SqlDB::IsOpened()
{
    return m_pDatabase && m_pDatabase->isOpen();
}

bool SqlDB::Connect(SqlInfo &info)
{
    if (!info.bRemote)
        info.strServer = CString();
    const char *driver = kindDriver(info.nKind);
    if (!driver)
        return false;
    // The record's texts go on as Unicode: a password outside Latin-1 survives.
    if (info.nKind == 2 || info.nKind == 3)
        return connectTo(QString::fromLatin1(driver), QString(), info.nPort, info.strDBName.text,
                         info.strUser.text, info.strPassword.text);
    return connectTo(QString::fromLatin1(driver), info.strServer.text, info.nPort, QString(),
                     info.strUser.text, info.strPassword.text);
}

bool SqlDB::Connect(int kind, const char *host, int port, const char *dbName, const char *user,
                    const char *password)
{
    const char *driver = kindDriver(kind);
    if (!driver)
        return false;
    if (kind == 2 || kind == 3)
        return ConnectDB(driver, "", port, dbName, user, password);
    return ConnectDB(driver, host, port, "", user, password);
}

bool SqlDB::ConnectDB(const char *driver, const char *host, int port, const char *dbName,
                      const char *user, const char *password)
{
    return connectTo(latin1(driver), latin1(host), port, latin1(dbName), latin1(user),
                     latin1(password));
}

bool SqlDB::connectTo(const QString &driver, const QString &host, int port, const QString &dbName,
                      const QString &user, const QString &password)
{
    if (!m_pDatabase)
        m_pDatabase = new QSqlDatabase;
    if (m_pDatabase->isOpen())
        return true;

    VantorPrivate::MutexLocker<> lock(&m_Mutex);
    m_strDriver = CString(driver);
    const QString name = QString::asprintf("DB_CONNECTION_%d", m_nConnectionID++);
    *m_pDatabase = QSqlDatabase::addDatabase(driver, name);
    if (!host.isEmpty()) {
        m_pDatabase->setHostName(host);
        m_pDatabase->setPort(port);
    }
    m_pDatabase->setDatabaseName(dbName);
    m_pDatabase->setUserName(user);
    m_pDatabase->setPassword(password);
    const bool opened = m_pDatabase->open();
    if (!opened)
        ShowErrorMessage();
    return opened;
}

bool SqlDB::Execute(const char *sql)
{
    return run(sql, nullptr);
}

bool SqlDB::Execute(const char *sql, QList<QVariant> &rows)
{
    return run(sql, &rows);
}

bool SqlDB::run(const char *sql, QList<QVariant> *rows)
{
    if (!IsOpened() || !sql || !*sql)
        return false;

    VantorPrivate::MutexLocker<> lock(&m_Mutex);
    QSqlQuery query(*m_pDatabase);
    PrintMessage("%s\r\n", sql);
    bool ok = query.exec(QString::fromLatin1(sql));
    if (!ok) {
        const QSqlError error = query.lastError();
        if (error.isValid())
            ShowErrorMessage(error.text().toUtf8().constData());
    } else if (rows) {
        // The column names are the same on every row: build the map's keys once, then copy
        // that map per row and fill its values in key order. A name that occurs twice keeps
        // the value of its last column, as inserting column by column would.
        const QSqlRecord header = query.record();
        QVariantMap keys;
        for (int i = 0; i < header.count(); ++i)
            keys.insert(header.fieldName(i), i);
        std::vector<int> columns;
        std::vector<int> types;
        columns.reserve(keys.size());
        types.reserve(keys.size());
        for (auto it = keys.cbegin(); it != keys.cend(); ++it) {
            columns.push_back(it.value().toInt());
            types.push_back(VantorCompat::sqlColumnType(header, columns.back()));
        }
        while (query.next()) {
            QVariantMap row = keys;
            auto column = columns.cbegin();
            auto type = types.cbegin();
            for (auto it = row.begin(); it != row.end(); ++it, ++column, ++type)
                it.value() = VantorCompat::sqlValue(query.value(*column), *type);
            rows->append(row);
        }
    }
    query.finish();
    query.clear();
    return ok;
}

void SqlDB::Disconnect()
{
    if (!m_pDatabase)
        return;
    if (m_pDatabase->isOpen()) {
        m_pDatabase->commit();
        m_pDatabase->close();
    }
    const QString name = m_pDatabase->connectionName();
    {
        QSqlDatabase registered = QSqlDatabase::database(name, false);
        if (registered.isOpen()) {
            registered.commit();
            registered.close();
        }
    }
    // Every handle on the connection is let go before its name is removed, so Qt has no
    // reason to complain that the connection is still in use.
    delete m_pDatabase;
    m_pDatabase = nullptr;
    QSqlDatabase::removeDatabase(name);
}

void SqlDB::ShowErrorMessage()
{
    if (!m_pDatabase)
        return;
    const QSqlError error = m_pDatabase->lastError();
    m_strLastError = CString(error.text());
    if (m_strLastError.IsEmpty())
        return;
    const QByteArray text = error.text().toUtf8();
    QByteArray message;
    if (m_bShowMessageBox)
        message =
            QString::asprintf("<html><head/><body><p>Rdb connection error<br/>%s</p></body></html>",
                              text.constData())
                .toUtf8();
    else
        message =
            QString::asprintf("Rdb connection error\r\n%s\r\n%s", text.constData(), "").toUtf8();
    ShowErrorMessage(message.constData());
}

void SqlDB::ShowErrorMessage(const char *text)
{
    if (!text)
        text = "";
    if (m_bShowMessageBox)
        AfxMessageBox(text, 0, 0);
    else
        PrintMessage("%s\r\n", text);
}

BOOL SqlDB::SaveSql(const char *, const char *)
{
    return 0;
}

BOOL SqlDB::GetDSN(CString &)
{
    return 0;
}

BOOL SqlDB::SelectSql(CStringArray &, const char *, char **, int)
{
    return 0;
}

int SqlDB::GetRowCount(const char *, const char *)
{
    return -1;
}
