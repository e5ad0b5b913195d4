// SPDX-License-Identifier: MIT
// The database settings dialog: how a record opens (row, port, field states), what choosing a
// kind does, and what OK and Cancel leave in the record.
#include "ModalResponder.h"

#include <DialogSetRDBInfo.h>

#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

namespace {
template<typename T>
T *child(QWidget *w, const char *name)
{
    T *c = w->findChild<T *>(QString::fromLatin1(name));
    if (!c)
        qFatal("no %s", name);
    return c;
}

struct Form
{
    explicit Form(QWidget *w)
        : kind(child<QComboBox>(w, "comboBoxRDBKind"))
        , dbName(child<QLineEdit>(w, "lineEditDBName"))
        , user(child<QLineEdit>(w, "lineEditID"))
        , password(child<QLineEdit>(w, "lineEditPassword"))
        , remote(child<QGroupBox>(w, "groupBoxRemote"))
        , server(child<QLineEdit>(w, "lineEditIP"))
        , port(child<QSpinBox>(w, "spinBoxPort"))
        , ok(child<QPushButton>(w, "pushButtonOk"))
        , cancel(child<QPushButton>(w, "pushButtonCancel"))
    { }
    /// "row port dbName-enabled remote-enabled remote-checked", e.g. "1 3306 0 1 0".
    QString state() const
    {
        return QStringLiteral("%1 %2 %3 %4 %5")
            .arg(kind->currentIndex())
            .arg(port->value())
            .arg(int(dbName->isEnabled()))
            .arg(int(remote->isEnabled()))
            .arg(int(remote->isChecked()));
    }
    QComboBox *kind;
    QLineEdit *dbName, *user, *password;
    QGroupBox *remote;
    QLineEdit *server;
    QSpinBox *port;
    QPushButton *ok, *cancel;
};

SqlInfo record(int kind, int port, int remote)
{
    SqlInfo info;
    info.nKind = kind;
    info.nPort = port;
    info.bRemote = remote;
    info.strServer = CString("127.0.0.1");
    info.strDBName = CString("plant");
    info.strUser = CString("op");
    info.strPassword = CString("pw");
    return info;
}

QString fields(const SqlInfo &i)
{
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
        .arg(i.nKind)
        .arg(i.bRemote)
        .arg(i.strServer.text)
        .arg(i.nPort)
        .arg(i.strDBName.text, i.strUser.text, i.strPassword.text);
}
} // namespace

class tst_RDBInfoDialog : public QObject
{
    Q_OBJECT

private slots:
    void opens_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("port");
        QTest::addColumn<int>("remote");
        QTest::addColumn<QString>("state"); // row port dbName-enabled remote-enabled -checked
        QTest::newRow("Oracle, no port") << 0 << 0 << 1 << "0 1521 0 1 1";
        QTest::newRow("MariaDB, no port") << 1 << 0 << 0 << "1 3306 0 1 0";
        QTest::newRow("MariaDB keeps 3307") << 1 << 3307 << 1 << "1 3307 0 1 1";
        QTest::newRow("kind 3 on the MS SQL row") << 3 << 1433 << 0 << "2 1433 1 0 0";
        QTest::newRow("kind 2 on the ODBC row") << 2 << 0 << 0 << "3 1521 1 0 0";
        QTest::newRow("PostgreSQL on the first row") << 4 << 5432 << 1 << "0 5432 0 1 1";
        QTest::newRow("unknown kind") << 9 << 0 << 0 << "0 1521 0 1 0";
        QTest::newRow("negative kind") << -1 << 0 << 0 << "0 1521 0 1 0";
    }
    void opens()
    {
        QFETCH(int, kind);
        QFETCH(int, port);
        QFETCH(int, remote);
        QFETCH(QString, state);
        SqlInfo info = record(kind, port, remote);
        DialogSetRDBInfo dialog(nullptr, &info);
        Form f(&dialog);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Set RDB infomation"));
        QCOMPARE(f.state(), state);
        QCOMPARE(f.kind->count(), 4);
        QCOMPARE(f.kind->itemText(2), QStringLiteral("MS SQL(ODBC)"));
        QCOMPARE(f.server->text() + f.dbName->text() + f.user->text() + f.password->text(),
                 QStringLiteral("127.0.0.1plantoppw"));
        // Nothing is written back before OK.
        QCOMPARE(fields(info), fields(record(kind, port, remote)));
    }

    void choosingAKind()
    {
        SqlInfo info = record(1, 3307, 1);
        DialogSetRDBInfo dialog(nullptr, &info);
        Form f(&dialog);
        const QStringList steps {QStringLiteral("0 1521 0 1 1"), QStringLiteral("2 1521 1 0 0"),
                                 QStringLiteral("1 3306 0 1 0"), QStringLiteral("3 3306 1 0 0")};
        const int rows[] = {0, 2, 1, 3};
        for (int i = 0; i < 4; ++i) {
            f.kind->setCurrentIndex(rows[i]);
            QCOMPARE(f.state(), steps.at(i));
        }
        // After the dialog is built, even a port typed in gives way to the kind's own.
        f.port->setValue(4000);
        f.kind->setCurrentIndex(1);
        QCOMPARE(f.port->value(), 3306);
    }

    void okStoresTheRow_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("stored");
        QTest::newRow("PostgreSQL becomes Oracle") << 4 << -1 << "0|1|127.0.0.1|5432|plant|op|pw";
        QTest::newRow("MS SQL(ODBC) row stores 3") << 1 << 2 << "3|0|127.0.0.1|5432|plant|op|pw";
        QTest::newRow("ODBC row stores 2") << 1 << 3 << "2|0|127.0.0.1|5432|plant|op|pw";
        QTest::newRow("MariaDB row, port reset") << 0 << 1 << "1|1|127.0.0.1|3306|plant|op|pw";
    }
    void okStoresTheRow()
    {
        QFETCH(int, kind);
        QFETCH(int, row);
        QFETCH(QString, stored);
        SqlInfo info = record(kind, 5432, 1);
        DialogSetRDBInfo dialog(nullptr, &info);
        Form f(&dialog);
        if (row >= 0)
            f.kind->setCurrentIndex(row);
        QTest::mouseClick(f.ok, Qt::LeftButton);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(fields(info), stored);
    }

    void okStoresEditedFields()
    {
        SqlInfo info = record(3, 0, 0);
        QString focus;
        ModalResponder responder([&focus](QWidget *w) {
            Form f(w);
            focus = w->focusWidget() ? w->focusWidget()->objectName() : QString();
            f.dbName->setText(QStringLiteral("DSN2"));
            f.user->setText(QStringLiteral("sa"));
            f.password->setText(QStringLiteral("s3cret"));
            f.server->setText(QStringLiteral("db.local")); // disabled, stored as it stands
            f.port->setValue(1444);
            QTest::mouseClick(f.ok, Qt::LeftButton);
        });
        QVERIFY(RDBInfoDlg(nullptr, &info));
        QCOMPARE(responder.shown, 1);
        QCOMPARE(responder.className, QStringLiteral("DialogSetRDBInfo"));
        // Focus starts in the password when a user is known.
        QCOMPARE(focus, QStringLiteral("lineEditPassword"));
        QCOMPARE(fields(info), QStringLiteral("3|0|db.local|1444|DSN2|sa|s3cret"));
    }

    void cancelLeavesTheRecord()
    {
        SqlInfo info = record(1, 3307, 1);
        info.strUser = CString();
        QString focus;
        ModalResponder responder([&focus](QWidget *w) {
            Form f(w);
            focus = w->focusWidget() ? w->focusWidget()->objectName() : QString();
            f.kind->setCurrentIndex(3);
            f.dbName->setText(QStringLiteral("changed"));
            QTest::mouseClick(f.cancel, Qt::LeftButton);
        });
        QVERIFY(!RDBInfoDlg(nullptr, &info));
        QCOMPARE(responder.shown, 1);
        QVERIFY(focus != QLatin1String("lineEditPassword"));
        SqlInfo expected = record(1, 3307, 1);
        expected.strUser = CString();
        QCOMPARE(fields(info), fields(expected));
    }
};

QTEST_MAIN(tst_RDBInfoDialog)
#include "tst_rdbinfodialog.moc"
