// DialogEx (Escape refused, attached window closed and deleted) and the single waiting window
// DialogExecuting (one instance, first text kept, pointer cleared and object freed on finish).
#include "DialogEx.h"
#include "DialogExecuting.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

class tst_Dialogs : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void dialogExEscape_data();
    void dialogExEscape();
    void dialogExChildWindow_data();
    void dialogExChildWindow();

    void executingForm_data();
    void executingForm();
    void executeTwiceShowsOne();
    void closeWithoutDialog();
    void finishing_data();
    void finishing();
    void parentDeletedWhileShown();
    void progressBar();
};

static QList<DialogExecuting *> executingWindows()
{
    QList<DialogExecuting *> found;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *d = qobject_cast<DialogExecuting *>(w))
            found << d;
    return found;
}

void tst_Dialogs::cleanup()
{
    DialogExecuting::Close();
    QTRY_VERIFY(executingWindows().isEmpty());
    QVERIFY(!DialogExecuting::ExecutingDlg);
}

void tst_Dialogs::dialogExEscape_data()
{
    QTest::addColumn<bool>("block");
    QTest::addColumn<bool>("fromChild");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("stillOpen");

    QTest::newRow("escape, blocked") << true << false << int(Qt::Key_Escape) << true;
    QTest::newRow("escape in a line edit, blocked") << true << true << int(Qt::Key_Escape) << true;
    QTest::newRow("escape, unblocked") << false << false << int(Qt::Key_Escape) << false;
    QTest::newRow("other key, blocked") << true << false << int(Qt::Key_A) << true;
}

void tst_Dialogs::dialogExEscape()
{
    QFETCH(bool, block);
    QFETCH(bool, fromChild);
    QFETCH(int, key);
    QFETCH(bool, stillOpen);

    DialogEx dialog;
    QVERIFY(dialog.m_bBlockEscape);
    dialog.m_bBlockEscape = block;
    auto *edit = new QLineEdit(&dialog);
    QSignalSpy rejected(&dialog, &QDialog::rejected);

    // Run it as applications do, modally, and press the key while it runs.
    QTimer::singleShot(0, &dialog, [&] {
        QWidget *target = fromChild ? static_cast<QWidget *>(edit) : &dialog;
        QTest::keyClick(target, Qt::Key(key));
        QTimer::singleShot(0, &dialog, [&] { dialog.done(42); });
    });
    const int result = dialog.exec();
    QCOMPARE(result, stillOpen ? 42 : int(QDialog::Rejected));
    QCOMPARE(rejected.count(), stillOpen ? 0 : 1);
}

void tst_Dialogs::dialogExChildWindow_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("closed") << "close";
    QTest::newRow("destroyed without closing") << "destroy";
    QTest::newRow("child deleted elsewhere first") << "child first";
}

void tst_Dialogs::dialogExChildWindow()
{
    QFETCH(QString, how);

    auto *dialog = new DialogEx;
    QPointer<QWidget> child = new QWidget;
    QSignalSpy childDestroyed(child.data(), &QObject::destroyed);
    QVERIFY(!dialog->m_pChildWindow);
    dialog->m_pChildWindow = child.data();
    dialog->show();
    child->show();

    if (how == QLatin1String("close")) {
        QVERIFY(dialog->close());
        QVERIFY(child.isNull());
        QVERIFY(!dialog->m_pChildWindow);
        QVERIFY(!dialog->isVisible());
        delete dialog;
    } else if (how == QLatin1String("destroy")) {
        delete dialog;
        QVERIFY(child.isNull());
    } else {
        delete child.data();
        QVERIFY(!dialog->m_pChildWindow);
        QVERIFY(dialog->close());
        delete dialog;
    }
    QCOMPARE(childDestroyed.count(), 1);
}

void tst_Dialogs::executingForm_data()
{
    QTest::addColumn<QString>("child");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QRect>("geometry");

    QTest::newRow("frame") << "frame"
                           << "DialogExecuting" << QRect(0, 0, 370, 111);
    QTest::newRow("label") << "labelText"
                           << "DialogExecuting" << QRect(10, 10, 351, 51);
    QTest::newRow("progress bar") << "progressBar"
                                  << "frame" << QRect(10, 60, 351, 8);
    QTest::newRow("cancel") << "pushButtonCancel"
                            << "frame" << QRect(280, 77, 81, 21);
}

void tst_Dialogs::executingForm()
{
    QFETCH(QString, child);
    QFETCH(QString, parent);
    QFETCH(QRect, geometry);

    DialogExecuting dialog(nullptr, CString("Loading recipes"), Qt::Tool | Qt::WindowTitleHint);
    QCOMPARE(dialog.objectName(), QStringLiteral("DialogExecuting"));
    QCOMPARE(int(dialog.windowFlags()), 2049);
    QCOMPARE(dialog.size(), QSize(370, 111));
    QCOMPARE(dialog.minimumSize(), dialog.maximumSize());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Executing"));
    QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("labelText"))->text(),
             QStringLiteral("Loading recipes"));

    auto *w = dialog.findChild<QWidget *>(child);
    QVERIFY(w);
    QCOMPARE(w->parentWidget()->objectName(), parent);
    QCOMPARE(w->geometry(), geometry);
}

void tst_Dialogs::executeTwiceShowsOne()
{
    DialogExecuting::Execute(nullptr, CString("Copying files"), Qt::WindowFlags());
    DialogExecuting *first = DialogExecuting::ExecutingDlg;
    QVERIFY(first);
    QVERIFY(first->isVisible());
    DialogExecuting::Execute(nullptr, CString("Second text"), Qt::WindowFlags());
    QCOMPARE(DialogExecuting::ExecutingDlg, first);
    QCOMPARE(executingWindows().size(), 1);
    QCOMPARE(first->findChild<QLabel *>(QStringLiteral("labelText"))->text(),
             QStringLiteral("Copying files"));
    QVERIFY(!first->isModal());
}

void tst_Dialogs::closeWithoutDialog()
{
    QVERIFY(!DialogExecuting::ExecutingDlg);
    DialogExecuting::Close();
    QVERIFY(!DialogExecuting::ExecutingDlg);
    QVERIFY(executingWindows().isEmpty());
}

void tst_Dialogs::finishing_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("Cancel clicked") << "cancel";
    QTest::newRow("Close()") << "Close";
    QTest::newRow("Escape") << "escape";
    QTest::newRow("accepted") << "accept";
}

void tst_Dialogs::finishing()
{
    QFETCH(QString, how);

    DialogExecuting::Execute(nullptr, CString("Exporting"), Qt::WindowFlags());
    QPointer<DialogExecuting> dialog = DialogExecuting::ExecutingDlg;
    QVERIFY(dialog);
    QSignalSpy finished(dialog.data(), &QDialog::finished);

    if (how == QLatin1String("cancel"))
        dialog->findChild<QPushButton *>(QStringLiteral("pushButtonCancel"))->click();
    else if (how == QLatin1String("Close"))
        DialogExecuting::Close();
    else if (how == QLatin1String("escape"))
        QTest::keyClick(dialog.data(), Qt::Key_Escape);
    else
        dialog->accept();

    QCOMPARE(finished.count(), 1);
    QVERIFY(!DialogExecuting::ExecutingDlg);
    QTRY_VERIFY(dialog.isNull());

    // The next Execute makes a fresh window.
    DialogExecuting::Execute(nullptr, CString("Next job"), Qt::WindowFlags());
    QVERIFY(DialogExecuting::ExecutingDlg);
    QCOMPARE(
        DialogExecuting::ExecutingDlg->findChild<QLabel *>(QStringLiteral("labelText"))->text(),
        QStringLiteral("Next job"));
}

void tst_Dialogs::parentDeletedWhileShown()
{
    auto *parent = new QWidget;
    DialogExecuting::Execute(parent, CString("Waiting"), Qt::WindowFlags());
    QVERIFY(DialogExecuting::ExecutingDlg);
    delete parent;
    QVERIFY(!DialogExecuting::ExecutingDlg);
    DialogExecuting::Close();
}

void tst_Dialogs::progressBar()
{
    DialogExecuting dialog(nullptr, CString("Scanning"), Qt::WindowFlags());
    dialog.show();
    auto *bar = dialog.findChild<QProgressBar *>(QStringLiteral("progressBar"));
    QVERIFY(bar->isHidden());
    dialog.SetPos(30);
    QVERIFY(bar->isHidden());
    QCOMPARE(bar->value(), 30);
    dialog.SetRange(250);
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 250);
    dialog.SetPos(200);
    QCOMPARE(bar->value(), 200);

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

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
