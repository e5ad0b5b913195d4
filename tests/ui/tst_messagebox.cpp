// AfxMessageBox and MessageBoxW: every result code of every understood type code, the types that
// show nothing, the titles and texts, and the look of the large-type dialogs.
#include "ModalResponder.h"

#include "AfxMessageBox.h"
#include "AskBoxDlg.h"
#include "FitScreen.h"
#include "MessageBoxDlg.h"
#include "MessageBoxW.h"
#include "VantorStrings.h"

#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

namespace {

// "close", "escape", an object name ("pushButtonOK") or a QMessageBox button ("Yes", "Retry").
ModalResponder::Action answer(const QString &how)
{
    return [how](QWidget *w) {
        if (how == QLatin1String("close"))
            return void(w->close());
        if (how == QLatin1String("escape"))
            return QTest::keyClick(w, Qt::Key_Escape);
        QAbstractButton *button = w->findChild<QPushButton *>(how);
        if (auto *box = qobject_cast<QMessageBox *>(w)) {
            const QMetaEnum buttons = QMetaEnum::fromType<QMessageBox::StandardButtons>();
            button = box->button(QMessageBox::StandardButton(buttons.keyToValue(qPrintable(how))));
        }
        if (!button)
            w->close(); // fail, without leaving the caller waiting
        QVERIFY2(button, qPrintable(how));
        button->click();
    };
}

} // namespace

class tst_MessageBox : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SetAppName("Plant Monitor"); }

    void results_data()
    {
        QTest::addColumn<bool>("afx"); // AfxMessageBox, else MessageBoxW
        QTest::addColumn<uint>("type");
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("expected");
        QTest::addColumn<QString>("dialog"); // empty: nothing is shown

        const QString box = QStringLiteral("QMessageBox");
        const uint ok = MB_OK, yesno = MB_YESNO, ari = MB_ABORTRETRYIGNORE;
        QTest::newRow("afx ok, OK") << true << ok << "Ok" << IDOK << box;
        QTest::newRow("afx ok, closed") << true << ok << "close" << IDOK << box;
        QTest::newRow("afx yesno, Yes") << true << yesno << "Yes" << IDYES << box;
        QTest::newRow("afx yesno, No") << true << yesno << "No" << IDNO << box;
        QTest::newRow("afx yesno, closed") << true << yesno << "close" << IDNO << box;
        QTest::newRow("afx yesno, Escape") << true << yesno << "escape" << IDNO << box;
        QTest::newRow("afx abort, Abort") << true << ari << "Abort" << IDABORT << box;
        QTest::newRow("afx abort, Retry") << true << ari << "Retry" << IDRETRY << box;
        QTest::newRow("afx abort, Ignore") << true << ari << "Ignore" << IDIGNORE << box;
        QTest::newRow("afx abort, closed") << true << ari << "close" << IDABORT << box;
        // Compared as a whole number: any flag added makes the type unknown.
        QTest::newRow("afx okcancel") << true << uint(MB_OKCANCEL) << "close" << IDOK << "";
        QTest::newRow("afx yesnocancel") << true << uint(MB_YESNOCANCEL) << "close" << IDOK << "";
        QTest::newRow("afx yesno + icon")
            << true << (yesno | MB_ICONQUESTION) << "Yes" << IDOK << "";
        QTest::newRow("afx abort + default 2")
            << true << (ari | MB_DEFBUTTON2) << "Retry" << IDOK << "";
        QTest::newRow("afx ok + system modal")
            << true << uint(MB_SYSTEMMODAL) << "close" << IDOK << "";
        QTest::newRow("afx beyond the table") << true << 6u << "close" << IDOK << "";

        const QString msg = QStringLiteral("MessageBoxDlg"), ask = QStringLiteral("AskBoxDlg");
        QTest::newRow("W ok, OK") << false << ok << "pushButtonOK" << IDOK << msg;
        QTest::newRow("W ok, closed") << false << ok << "close" << IDOK << msg;
        QTest::newRow("W yesno, OK") << false << yesno << "pushButtonOK" << IDYES << ask;
        QTest::newRow("W yesno, Cancel") << false << yesno << "pushButtonCancel" << IDNO << ask;
        QTest::newRow("W yesno, closed") << false << yesno << "close" << IDNO << ask;
        QTest::newRow("W yesno, Escape") << false << yesno << "escape" << IDNO << ask;
        // Unlike AfxMessageBox, abort/retry/ignore is not understood here.
        QTest::newRow("W abortretryignore") << false << ari << "close" << IDOK << "";
        QTest::newRow("W ok + icon") << false << uint(MB_ICONASTERISK) << "close" << IDOK << "";
        QTest::newRow("W yesno + icon")
            << false << (yesno | MB_ICONQUESTION) << "close" << IDOK << "";
    }

    void results()
    {
        QFETCH(bool, afx);
        QFETCH(uint, type);
        QFETCH(QString, how);
        QFETCH(int, expected);
        QFETCH(QString, dialog);

        ModalResponder responder(answer(how));
        const char *text = afx ? "Tank level low" : "수위 경보: 탱크 2";
        QCOMPARE(afx ? AfxMessageBox(text, type, 0) : MessageBoxW(nullptr, text, "caption", type),
                 expected);
        QCOMPARE(responder.shown, dialog.isEmpty() ? 0 : 1);
        if (dialog.isEmpty())
            return;
        QCOMPARE(responder.className, dialog);
        // AfxMessageBox takes its title from the application's name; MessageBoxW ignores the
        // caption and keeps its form's title.
        const bool asks = dialog == QLatin1String("AskBoxDlg");
        QCOMPARE(responder.title,
                 QLatin1String(afx        ? "Plant Monitor"
                                   : asks ? "Ask Dialog"
                                          : "Dialog"));
        QCOMPARE(responder.message, QString::fromUtf8(text));
    }

    void afxText_data()
    {
        QTest::addColumn<bool>("viaCString");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");

        QTest::newRow("latin-1 byte")
            << false << QByteArray("Caf\xe9") << QStringLiteral("Caf\u00e9");
        // The CString form hands over its UTF-8 bytes, which are then read as Latin-1 too.
        QTest::newRow("CString, ascii") << true << QByteArray("Valve open") << "Valve open";
        QTest::newRow("CString, non-ascii")
            << true << QByteArray("Caf\xc3\xa9") << QStringLiteral("Caf\u00c3\u00a9");
    }

    void afxText()
    {
        QFETCH(bool, viaCString);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);

        ModalResponder responder(answer(QStringLiteral("Ok")));
        QCOMPARE(viaCString ? AfxMessageBox(CString(bytes.constData()), MB_OK, 7)
                            : AfxMessageBox(bytes.constData(), MB_OK, 7),
                 IDOK);
        QCOMPARE(responder.message, expected);
    }

    void forms_data()
    {
        QTest::addColumn<bool>("ask");
        QTest::newRow("MessageBoxDlg") << false;
        QTest::newRow("AskBoxDlg") << true;
    }

    void forms()
    {
        QFETCH(bool, ask);

        QScopedPointer<QDialog> dialog(ask ? static_cast<QDialog *>(new AskBoxDlg)
                                           : static_cast<QDialog *>(new MessageBoxDlg));
        QCOMPARE(dialog->size(), QSize(691, 191));
        QCOMPARE(dialog->minimumSize(), dialog->maximumSize());
        QVERIFY(!(dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
        QCOMPARE(dialog->pos(),
                 QPoint(std::max((FitScreen::m_nScreenWidth - 691) / 2, 0),
                        std::max((FitScreen::m_nScreenHeight - 191) / 2, 0)));
        QCOMPARE(dialog->palette().color(QPalette::Inactive, QPalette::Window), QColor(Qt::black));
        auto *label = dialog->findChild<QLabel *>(QStringLiteral("labelMessage"));
        QVERIFY(label->wordWrap());
        QCOMPARE(label->palette().color(QPalette::Disabled, QPalette::WindowText),
                 QColor(Qt::white));
        QCOMPARE(label->font().pointSize(), 18);
        QVERIFY(label->font().bold());
        // Enter does not answer the question: its OK button takes focus only from a click.
        auto *ok = dialog->findChild<QPushButton *>(QStringLiteral("pushButtonOK"));
        QCOMPARE(ok->focusPolicy(), ask ? Qt::ClickFocus : Qt::StrongFocus);
        QCOMPARE(ok->palette().color(QPalette::Active, QPalette::Button), QColor(16, 16, 16));
        QCOMPARE(ok->palette().color(QPalette::Active, QPalette::ButtonText), QColor(Qt::white));
    }
};

QTEST_MAIN(tst_MessageBox)
#include "tst_messagebox.moc"
