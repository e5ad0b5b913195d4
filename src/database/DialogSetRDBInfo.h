// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file DialogSetRDBInfo.h
 * The database connection dialog and RDBInfoDlg, which runs it on a SqlInfo record.
 */

#include "SqlInfo.h"
#include "vantor_export.h"

#include <QDialog>

namespace Ui {
class DialogSetRDBInfo;
}
class QWidget;

/**
 * Modal dialog that edits a caller's SqlInfo: kind, remote server and port, database name, user
 * and password. Only the fields the chosen kind connects with are enabled, and choosing a kind
 * fills in its usual port (1521 Oracle, 3306 MariaDB; the ODBC kinds keep the port).
 *
 * The kind box offers Oracle, MariaDB, MS SQL(ODBC) and ODBC; its rows map to kinds through
 * RDBKindForm, which crosses the two ODBC rows on purpose ("MS SQL(ODBC)" stores kind 3, "ODBC"
 * kind 2), matching the dialect rules of SqlDB. PostgreSQL is not offered: a record of kind 4
 * opens on the first row.
 */
class VANTOR_EXPORT DialogSetRDBInfo : public QDialog
{
    Q_OBJECT

public:
    /**
     * Fills the dialog from `info` (kept, not copied; written back only by OK). A non-zero port
     * in `info` is kept while the dialog is built; with port 0 the kind's usual port is shown.
     * With a user name given, the keyboard focus starts in the password field.
     */
    DialogSetRDBInfo(QWidget *parent, SqlInfo *info);
    ~DialogSetRDBInfo() override;

    /// Combo-box row to database kind: {0, 1, 3, 2}.
    static const int RDBKindForm[4];

    /**
     * Enables the database name and the remote group, then disables the database name for
     * kinds 0, 1 and 4, or unchecks and disables the remote group for the ODBC kinds 2 and 3.
     */
    void SetWindowStatus();

public slots:
    /// Stores every field into the record (disabled ones as they stand) and accepts.
    void on_pushButtonOk_clicked();
    /// Rejects; the record is left untouched.
    void on_pushButtonCancel_clicked();
    /// Applies the usual port of the row's kind and the field states.
    void on_comboBoxRDBKind_currentIndexChanged(int index);

private:
    Ui::DialogSetRDBInfo *ui;
    SqlInfo *m_pInfo;
    /// False while the constructor runs.
    bool m_bConstructed;
};

/// Runs DialogSetRDBInfo on `info` modally; true when the user pressed OK.
VANTOR_EXPORT bool RDBInfoDlg(QWidget *parent, SqlInfo *info);
