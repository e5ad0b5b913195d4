// AfxMessageBox and MessageBoxW: every result code of every understood type code, the types that
// show nothing, the titles and texts, and the forms of the large-type dialogs.
#include "ModalResponder.h"

#include "AfxMessageBox.h"
#include "AskBoxDlg.h"
#include "FitScreen.h"
#include "MessageBoxDlg.h"
#include "MessageBoxW.h"
#include "VantorStrings.h"

#include <QFrame>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

namespace {

// "close", "escape", an object name ("pushButtonOK") or a QMessageBox button ("Yes", "Retry").
ModalResponder::Action answer(const QString &how)
{
    return [how](QWidget *w) {
        if (how == QLatin1String("close")) {
            w->close();
        } else if (how == QLatin1String("escape")) {
            QTest::keyClick(w, Qt::Key_Escape);
        } else if (auto *box = qobject_cast<QMessageBox *>(w)) {
            const QMetaObject &mo = QMessageBox::staticMetaObject;
            const QMetaEnum buttons = mo.enumerator(mo.indexOfEnumerator("StandardButtons"));
            const int which = buttons.keyToValue(how.toLatin1().constData());
            QVERIFY2(box->button(QMessageBox::StandardButton(which)), qPrintable(how));
            box->button(QMessageBox::StandardButton(which))->click();
        } else {
            auto *button = w->findChild<QPushButton *>(how);
            QVERIFY2(button, qPrintable(how));
            button->click();
        }
    };
}

} // namespace

class tst_MessageBox : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SetAppName("Plant Monitor"); }

    void afxResults_data();
    void afxResults();
    void afxText_data();
    void afxText();
    void messageBoxWResults_data();
    void messageBoxWResults();
    void forms_data();
    void forms();
};

void tst_MessageBox::afxResults_data()
{
    QTest::addColumn<uint>("type");
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("expected");
    QTest::addColumn<bool>("shown");

    QTest::newRow("ok, OK") << uint(MB_OK) << "Ok" << IDOK << true;
    QTest::newRow("ok, closed") << uint(MB_OK) << "close" << IDOK << true;
    QTest::newRow("yesno, Yes") << uint(MB_YESNO) << "Yes" << IDYES << true;
    QTest::newRow("yesno, No") << uint(MB_YESNO) << "No" << IDNO << true;
    QTest::newRow("yesno, closed") << uint(MB_YESNO) << "close" << IDNO << true;
    QTest::newRow("yesno, Escape") << uint(MB_YESNO) << "escape" << IDNO << true;
    QTest::newRow("abort, Abort") << uint(MB_ABORTRETRYIGNORE) << "Abort" << IDABORT << true;
    QTest::newRow("abort, Retry") << uint(MB_ABORTRETRYIGNORE) << "Retry" << IDRETRY << true;
    QTest::newRow("abort, Ignore") << uint(MB_ABORTRETRYIGNORE) << "Ignore" << IDIGNORE << true;
    QTest::newRow("abort, closed") << uint(MB_ABORTRETRYIGNORE) << "close" << IDABORT << true;
    // Compared as a whole number: any flag added makes the type unknown.
    QTest::newRow("okcancel") << uint(MB_OKCANCEL) << "close" << IDOK << false;
    QTest::newRow("yesnocancel") << uint(MB_YESNOCANCEL) << "close" << IDOK << false;
    QTest::newRow("retrycancel") << uint(MB_RETRYCANCEL) << "close" << IDOK << false;
    QTest::newRow("icon alone") << uint(MB_ICONHAND) << "close" << IDOK << false;
    QTest::newRow("yesno + icon") << uint(MB_YESNO | MB_ICONQUESTION) << "Yes" << IDOK << false;
    QTest::newRow("abort + default 2")
        << uint(MB_ABORTRETRYIGNORE | MB_DEFBUTTON2) << "Retry" << IDOK << false;
    QTest::newRow("ok + system modal") << uint(MB_SYSTEMMODAL) << "close" << IDOK << false;
    QTest::newRow("beyond the table") << 6u << "close" << IDOK << false;
}

void tst_MessageBox::afxResults()
{
    QFETCH(uint, type);
    QFETCH(QString, how);
    QFETCH(int, expected);
    QFETCH(bool, shown);

    ModalResponder responder(answer(how));
    QCOMPARE(AfxMessageBox("Tank level low", type, 0), expected);
    QCOMPARE(responder.shown, shown ? 1 : 0);
    if (shown) {
        QCOMPARE(responder.className, QStringLiteral("QMessageBox"));
        QCOMPARE(responder.title, QStringLiteral("Plant Monitor"));
        QCOMPARE(responder.message, QStringLiteral("Tank level low"));
    }
}

void tst_MessageBox::afxText_data()
{
    QTest::addColumn<bool>("viaCString");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");

    QTest::newRow("ascii") << false << QByteArray("Pump 3 stopped") << "Pump 3 stopped";
    QTest::newRow("latin-1 byte") << false << QByteArray("Caf\xe9") << QStringLiteral("Caf\u00e9");
    // The CString form hands over its UTF-8 bytes, which are then read as Latin-1 too.
    QTest::newRow("CString, ascii") << true << QByteArray("Valve open") << "Valve open";
    QTest::newRow("CString, non-ascii")
        << true << QByteArray("Caf\xc3\xa9") << QStringLiteral("Caf\u00c3\u00a9");
}

void tst_MessageBox::afxText()
{
    QFETCH(bool, viaCString);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);

    ModalResponder responder(answer(QStringLiteral("Ok")));
    const int result = viaCString ? AfxMessageBox(CString(bytes.constData()), MB_OK, 7)
                                  : AfxMessageBox(bytes.constData(), MB_OK, 7);
    QCOMPARE(result, IDOK);
    QCOMPARE(responder.message, expected);
}

void tst_MessageBox::messageBoxWResults_data()
{
    QTest::addColumn<uint>("type");
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("expected");
    QTest::addColumn<QString>("dialog");

    QTest::newRow("ok, OK") << uint(MB_OK) << "pushButtonOK" << IDOK << "MessageBoxDlg";
    QTest::newRow("ok, closed") << uint(MB_OK) << "close" << IDOK << "MessageBoxDlg";
    QTest::newRow("yesno, OK") << uint(MB_YESNO) << "pushButtonOK" << IDYES << "AskBoxDlg";
    QTest::newRow("yesno, Cancel") << uint(MB_YESNO) << "pushButtonCancel" << IDNO << "AskBoxDlg";
    QTest::newRow("yesno, closed") << uint(MB_YESNO) << "close" << IDNO << "AskBoxDlg";
    QTest::newRow("yesno, Escape") << uint(MB_YESNO) << "escape" << IDNO << "AskBoxDlg";
    // Unlike AfxMessageBox, abort/retry/ignore is not understood here.
    QTest::newRow("abortretryignore") << uint(MB_ABORTRETRYIGNORE) << "close" << IDOK << "";
    QTest::newRow("okcancel") << uint(MB_OKCANCEL) << "close" << IDOK << "";
    QTest::newRow("yesnocancel") << uint(MB_YESNOCANCEL) << "close" << IDOK << "";
    QTest::newRow("ok + icon") << uint(MB_ICONASTERISK) << "close" << IDOK << "";
    QTest::newRow("yesno + icon") << uint(MB_YESNO | MB_ICONQUESTION) << "close" << IDOK << "";
}

void tst_MessageBox::messageBoxWResults()
{
    QFETCH(uint, type);
    QFETCH(QString, how);
    QFETCH(int, expected);
    QFETCH(QString, dialog);

    ModalResponder responder(answer(how));
    QCOMPARE(MessageBoxW(nullptr, "수위 경보: 탱크 2", "ignored caption", type), expected);
    QCOMPARE(responder.shown, dialog.isEmpty() ? 0 : 1);
    if (!dialog.isEmpty()) {
        QCOMPARE(responder.className, dialog);
        QCOMPARE(responder.title,
                 dialog == QLatin1String("AskBoxDlg") ? QStringLiteral("Ask Dialog")
                                                      : QStringLiteral("Dialog"));
        QCOMPARE(responder.message, QStringLiteral("수위 경보: 탱크 2"));
    }
}

void tst_MessageBox::forms_data()
{
    QTest::addColumn<bool>("ask");
    QTest::addColumn<QString>("child");
    QTest::addColumn<QRect>("geometry");

    QTest::newRow("message: frame") << false << "frame" << QRect(0, 0, 691, 191);
    QTest::newRow("message: label") << false << "labelMessage" << QRect(20, 20, 660, 101);
    QTest::newRow("message: OK") << false << "pushButtonOK" << QRect(290, 130, 131, 41);
    QTest::newRow("ask: frame") << true << "frame" << QRect(0, 0, 691, 191);
    QTest::newRow("ask: label") << true << "labelMessage" << QRect(20, 20, 660, 111);
    QTest::newRow("ask: OK") << true << "pushButtonOK" << QRect(220, 130, 131, 41);
    QTest::newRow("ask: Cancel") << true << "pushButtonCancel" << QRect(350, 130, 131, 41);
}

void tst_MessageBox::forms()
{
    QFETCH(bool, ask);
    QFETCH(QString, child);
    QFETCH(QRect, geometry);

    QScopedPointer<QDialog> dialog(ask ? static_cast<QDialog *>(new AskBoxDlg)
                                       : static_cast<QDialog *>(new MessageBoxDlg));
    QCOMPARE(dialog->size(), QSize(691, 191));
    QCOMPARE(dialog->minimumSize(), dialog->maximumSize());
    QVERIFY(!(dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(dialog->pos(),
             QPoint(std::max((FitScreen::m_nScreenWidth - 691) / 2, 0),
                    std::max((FitScreen::m_nScreenHeight - 191) / 2, 0)));
    QVERIFY(dialog->autoFillBackground());
    QCOMPARE(dialog->palette().color(QPalette::Inactive, QPalette::Window), QColor(Qt::black));

    auto *w = dialog->findChild<QWidget *>(child);
    QVERIFY(w);
    QCOMPARE(w->geometry(), geometry);
    if (auto *label = qobject_cast<QLabel *>(w)) {
        QVERIFY(label->wordWrap());
        QCOMPARE(label->alignment() & (Qt::AlignLeft | Qt::AlignTop), Qt::AlignLeft | Qt::AlignTop);
        QCOMPARE(label->palette().color(QPalette::Disabled, QPalette::WindowText),
                 QColor(Qt::white));
    }
    if (auto *button = qobject_cast<QPushButton *>(w)) {
        const QPalette p = button->palette();
        for (auto group : {QPalette::Active, QPalette::Inactive}) {
            QCOMPARE(p.color(group, QPalette::ButtonText), QColor(255, 255, 255));
            QCOMPARE(p.color(group, QPalette::Button), QColor(16, 16, 16));
        }
        QCOMPARE(p.color(QPalette::Disabled, QPalette::ButtonText), QColor(159, 158, 158));
        const bool clickOnly = ask && child == QLatin1String("pushButtonOK");
        QCOMPARE(button->focusPolicy(), clickOnly ? Qt::ClickFocus : Qt::StrongFocus);
    }
    if (!qobject_cast<QFrame *>(w) || qobject_cast<QLabel *>(w)) {
        QCOMPARE(w->font().pointSize(), 18);
        QVERIFY(w->font().bold());
        QCOMPARE(w->font().family(), QStringLiteral("Ubuntu"));
    }
}

QTEST_MAIN(tst_MessageBox)
#include "tst_messagebox.moc"
