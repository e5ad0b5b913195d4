// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "WinTypes.h"

/**
 * Connection settings of one database, as SqlDB::Connect(SqlInfo&) and the settings dialog
 * (DialogSetRDBInfo) use them. A plain record owned and copied by the caller.
 *
 * Database kinds, in the order of VantorStrings::RDBKind: 0 Oracle (QOCI), 1 MariaDB (QMYSQL),
 * 2 MS SQL through ODBC (QODBC), 3 ODBC (QODBC), 4 PostgreSQL (QPSQL). Kinds 0, 1 and 4 are
 * addressed by server and port and connect without a database name; kinds 2 and 3 name an
 * ODBC data source in strDBName and ignore server and port.
 */
struct SqlInfo
{
    /// Database kind 0-4 (see above).
    int nKind = 0;
    /// Zero means a local server: SqlDB::Connect(SqlInfo&) then empties strServer in place.
    BOOL bRemote = 0;
    /// Server host name or address.
    CString strServer;
    /// Server port.
    int nPort = 0;
    /// Database name; for the ODBC kinds the data-source name or a connection string.
    CString strDBName;
    /// Login name handed to the server or ODBC driver with the password.
    CString strUser;
    /// Kept in plain text in memory.
    CString strPassword;
};
