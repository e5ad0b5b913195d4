// SPDX-License-Identifier: MIT
// DialogEx (Escape refused, attached window freed) and the single waiting window DialogExecuting.
#include "DialogEx.h"
#include "DialogExecuting.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

static int executingWindows()
{
    const QWidgetList all = QApplication::topLevelWidgets();
    return int(std::count_if(all.begin(), all.end(), [](QWidget *w) {
        return qobject_cast<DialogExecuting *>(w) != nullptr;
    }));
}

static QString textOf(QDialog *dialog)
{
    return dialog->findChild<QLabel *>(QStringLiteral("labelText"))->text();
}

class tst_Dialogs : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        DialogExecuting::Close();
        QTRY_COMPARE(executingWindows(), 0);
        QVERIFY(!DialogExecuting::ExecutingDlg);
    }

    void dialogExEscape_data()
    {
        QTest::addColumn<bool>("block");
        QTest::addColumn<bool>("fromChild"); // pressed in a line edit inside
        QTest::newRow("blocked") << true << false;
        QTest::newRow("blocked, in a line edit") << true << true;
        QTest::newRow("unblocked") << false << false;
    }

    void dialogExEscape()
    {
        QFETCH(bool, block);
        QFETCH(bool, fromChild);
        DialogEx dialog;
        dialog.m_bBlockEscape = block;
        auto *edit = new QLineEdit(&dialog);
        // Run it as applications do, modally, and press Escape while it runs.
        QTimer::singleShot(0, &dialog, [&] {
            QTest::keyClick(fromChild ? static_cast<QWidget *>(edit) : &dialog, Qt::Key_Escape);
            QTimer::singleShot(0, &dialog, [&] { dialog.done(42); });
        });
        QCOMPARE(dialog.exec(), block ? 42 : int(QDialog::Rejected));
    }

    void dialogExChildWindow_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("closed") << "close";
        QTest::newRow("destroyed without closing") << "destroy";
        QTest::newRow("child deleted elsewhere first") << "child first";
    }

    void dialogExChildWindow()
    {
        QFETCH(QString, how);
        auto *dialog = new DialogEx;
        QPointer<QWidget> child = new QWidget;
        dialog->m_pChildWindow = child.data();
        dialog->show();
        child->show();
        if (how == QLatin1String("child first"))
            delete child.data();
        if (how != QLatin1String("destroy")) {
            QVERIFY(dialog->close());
            QVERIFY(child.isNull());
            QVERIFY(!dialog->m_pChildWindow);
        }
        delete dialog;
        QVERIFY(child.isNull());
    }

    void finishing_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Cancel clicked") << "cancel";
        QTest::newRow("Close()") << "Close";
        QTest::newRow("Escape") << "escape";
        QTest::newRow("parent deleted") << "parent";
    }

    void finishing()
    {
        QFETCH(QString, how);
        QWidget *parent = how == QLatin1String("parent") ? new QWidget : nullptr;
        DialogExecuting::Execute(parent, CString("Exporting"), Qt::WindowFlags());
        QPointer<DialogExecuting> dialog = DialogExecuting::ExecutingDlg;
        QVERIFY(dialog && dialog->isVisible() && !dialog->isModal());
        // A second Execute shows no second window and keeps the first text.
        DialogExecuting::Execute(nullptr, CString("Second text"), Qt::WindowFlags());
        QCOMPARE(DialogExecuting::ExecutingDlg, dialog.data());
        QCOMPARE(executingWindows(), 1);
        QCOMPARE(textOf(dialog), QStringLiteral("Exporting"));
        if (how == QLatin1String("cancel"))
            dialog->findChild<QPushButton *>(QStringLiteral("pushButtonCancel"))->click();
        else if (how == QLatin1String("Close"))
            DialogExecuting::Close();
        else if (how == QLatin1String("escape"))
            QTest::keyClick(dialog.data(), Qt::Key_Escape);
        else
            delete parent; // the window goes with it
        QVERIFY(!DialogExecuting::ExecutingDlg);
        QTRY_VERIFY(dialog.isNull());

        // Close() with no window does nothing; the next Execute makes a fresh window.
        DialogExecuting::Close();
        QCOMPARE(executingWindows(), 0);
        DialogExecuting::Execute(nullptr, CString("Next job"), Qt::WindowFlags());
        QVERIFY(DialogExecuting::ExecutingDlg);
        QCOMPARE(textOf(DialogExecuting::ExecutingDlg), QStringLiteral("Next job"));
    }

    void ownWindow()
    {
        // The flags asked for are replaced by a frameless window.
        DialogExecuting dialog(nullptr, CString("Scanning"), Qt::Tool | Qt::WindowTitleHint);
        QCOMPARE(dialog.windowFlags(), Qt::Window | Qt::FramelessWindowHint);
        QCOMPARE(dialog.minimumSize(), dialog.maximumSize());
        QCOMPARE(textOf(&dialog), QStringLiteral("Scanning"));
        dialog.show();
        auto *bar = dialog.findChild<QProgressBar *>(QStringLiteral("progressBar"));
        dialog.SetPos(30);
        QVERIFY(bar->isHidden()); // until a range is set
        QCOMPARE(bar->value(), 30);
        dialog.SetRange(250);
        QVERIFY(bar->isVisible());
        QCOMPARE(qMakePair(bar->minimum(), bar->maximum()), qMakePair(0, 250));
        auto *cancel = dialog.findChild<QPushButton *>(QStringLiteral("pushButtonCancel"));
        QVERIFY(cancel->isVisible());
        dialog.HideCancel();
        QVERIFY(cancel->isHidden());

        // A window the application made itself is not freed when it finishes.
        QPointer<DialogExecuting> guard(&dialog);
        dialog.reject();
        QTest::qWait(20);
        QVERIFY(guard);
    }
};

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
