// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "SqlInfo.h"
#include "WinTypes.h"
#include "vantor_export.h"

#include <QList>
#include <QMutex>
#include <QVariant>

class CStringArray;
class CStringList;
class QSqlDatabase;

/**
 * One relational-database connection per object, over Qt SQL, for the five database kinds of
 * SqlInfo (Oracle "QOCI", MariaDB "QMYSQL", the two ODBC kinds "QODBC", PostgreSQL "QPSQL").
 *
 * Each connect registers a Qt connection named "DB_CONNECTION_<n>" from the process-wide counter
 * m_nConnectionID. Connecting and both Execute forms hold the process-wide, non-recursive
 * m_Mutex for their whole run, so one statement runs at a time across all objects; each object
 * may live in its own thread (one object per thread, as Qt SQL requires).
 *
 * Every executed statement is written to the message log. Errors go to a message box when
 * m_bShowMessageBox is true and to the message log otherwise.
 *
 * The destructor deliberately does not disconnect: call Disconnect() first, or the Qt
 * connection stays registered and its handle leaks.
 */
class VANTOR_EXPORT SqlDB
{
public:
    /// Not connected; errors go to the message log (m_bShowMessageBox false).
    SqlDB();
    virtual ~SqlDB();

    /// True when a handle exists and it is open.
    bool IsOpened();

    /// Empties info.strServer in the caller's record when info.bRemote is zero (on purpose),
    /// then connects with the record's fields.
    bool Connect(SqlInfo &info);
    /**
     * Connects with the driver of `kind`. Kinds 0, 1, 4 pass host and port and always an empty
     * database name; kinds 2, 3 pass `dbName` as the ODBC data source and an empty host (so no
     * port is set). Other kinds return false and change nothing. Texts are read as Latin-1.
     */
    bool Connect(int kind, const char *host, int port, const char *dbName, const char *user,
                 const char *password);
    /**
     * Opens a connection with the Qt driver `driver`. An object already open returns true and
     * ignores the arguments. Otherwise, under m_Mutex, a new Qt connection "DB_CONNECTION_<n>"
     * is registered (every attempt consumes a number, also a failing one) and opened; host and
     * port are set only for a non-empty host. A failure is reported by ShowErrorMessage().
     * A failed connection stays registered until a later Disconnect() removes the name then
     * current, as existing callers expect.
     */
    bool ConnectDB(const char *driver, const char *host, int port, const char *dbName,
                   const char *user, const char *password);

    /**
     * Runs one statement. False without an open connection or with empty SQL (nothing logged);
     * otherwise the statement is logged as "<sql>\r\n" and a failure's error text is routed
     * through ShowErrorMessage(const char*). The connection stays open after a failure.
     */
    bool Execute(const char *sql);
    /**
     * As Execute(sql), and appends one QVariantMap (column name to value, with the driver's
     * types) per result row to `rows`, after what the list already holds. Of two columns with
     * the same name the later one wins.
     */
    bool Execute(const char *sql, QList<QVariant> &rows);

    /// Commits and closes the connection, unregisters its Qt name and deletes the handle.
    /// Harmless on an object without a handle.
    void Disconnect();

    /**
     * Reports the connection's last error, kept in m_strLastError: nothing when it is empty,
     * otherwise "Rdb connection error" and the text, as an HTML paragraph in a box or as
     * "Rdb connection error\r\n<text>\r\n\r\n" in the log.
     */
    void ShowErrorMessage();
    /// An OK message box with `text` when m_bShowMessageBox is true, else "<text>\r\n" to the log.
    void ShowErrorMessage(const char *text);

    /// Kept for existing callers; does nothing and returns false.
    BOOL SaveSql(const char *, const char *);
    /// Kept for existing callers; does nothing and returns false.
    BOOL GetDSN(CString &);
    /// Kept for existing callers; does nothing and returns false.
    BOOL SelectSql(CStringArray &, const char *, char **, int);
    /// Kept for existing callers; does nothing and returns -1.
    int GetRowCount(const char *, const char *);

    // Dialects and catalogue. Every operation takes the kind the caller connected with; the
    // connection's own driver is not consulted.

    /// "YYYY-MM-DD hh:mm:ss" from the record's date and time (milliseconds ignored).
    static CString GetTimeString(SYSTEMTIME &st);
    /// The time text of `t` (milliseconds since 1970), in local time when `local` is true.
    static CString GetTimeString(long long t, bool local);
    /// The time text of now, in UTC.
    static CString GetTimeString();
    /**
     * Parses a time text (trimmed) into milliseconds since 1970, read as UTC; 0 when fewer than
     * 14 characters remain. Fields are read like atoi (a non-digit start gives 0). The seconds
     * are read deliberately from position 16, the colon in "YYYY-MM-DD hh:mm:ss", so they come
     * out as 0: stored values have always been compared that way.
     */
    static long long GetRDBTime(CString text);
    /**
     * The SQL date-time expression of a time text: TO_DATE(...,'YYYY/MM/DD HH24:MI:SS') for
     * kind 0, CONVERT (DATETIME, ...) for kind 3, STR_TO_DATE(...) for every other kind
     * (kind 3 is the SQL Server dialect here and kind 2 follows MariaDB, on purpose).
     */
    static CString GetSqlTime(int kind, CString text);
    /// GetSqlTime of the UTC time text of `t`.
    static CString GetSqlTime(int kind, long long t);
    /// "schema.table" for kinds 1, 2 and 4 with a non-empty schema, else `table`.
    static CString GetTableName(int kind, CString table, CString schema);
    /**
     * The kind whose name in VantorStrings::RDBKind equals `name` exactly. Only entries 0-3 are
     * compared, so "PostgreSQL", like any unknown name, deliberately gives 0.
     */
    static int GetDatabaseKind(CString name);

    /// Kind 0: the session holds the DBA role. Kind 1: `user` is exactly "root". Others: false.
    bool IsDBA(int kind, const char *user);
    /**
     * Appends the names of the base tables (of `schema`, when given, for kinds 1, 2 and 4) to
     * `list`. Each kind reads its own column name from the rows, case-sensitively, as existing
     * callers expect; a row without it gives an empty name. Returns false only when the
     * connection is not open: a failing statement is reported and still gives true.
     */
    bool GetTableList(int kind, CString schema, CStringList &list);
    /// True when GetTableList finds `table` (case-sensitive).
    bool IsExistTable(int kind, CString schema, CString table);
    /// Appends the database (schema) names of the server; same result rule as GetTableList.
    bool GetDatabaseList(int kind, CStringList &list);
    /// True when GetDatabaseList finds `name` (case-sensitive).
    bool IsExistDatabase(int kind, const char *name);

    /// Errors go to a message box when true, to the message log when false (the default).
    bool m_bShowMessageBox;

    /// Serialises every connect and statement of every SqlDB in the process.
    static QMutex m_Mutex;
    /// Number of the next Qt connection name "DB_CONNECTION_<n>"; starts at 0.
    static int m_nConnectionID;

protected:
    /// The Qt connection; null before the first connect and after Disconnect().
    QSqlDatabase *m_pDatabase;
    /// Full text of the last connection error.
    CString m_strLastError;
    /// Qt driver name of the last connect.
    CString m_strDriver;
    /// Kept for existing subclasses; unused here.
    CString m_strDSN;
    /// Kept for existing subclasses; unused here.
    CString m_strSql;

private:
    bool connectTo(const QString &driver, const QString &host, int port, const QString &dbName,
                   const QString &user, const QString &password);
    bool run(const char *sql, QList<QVariant> *rows);
    bool listNames(const QString &sql, const QString &key, CStringList &list);
};
