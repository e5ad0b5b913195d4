// SPDX-License-Identifier: MIT
// AfxMessageBox and MessageBoxW: result codes, unknown types, titles, texts, dialog set-up.
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
        const QMetaEnum buttons = QMetaEnum::fromType<QMessageBox::StandardButtons>();
        auto *box = qobject_cast<QMessageBox *>(w);
        QAbstractButton *button = box
            ? box->button(QMessageBox::StandardButton(buttons.keyToValue(qPrintable(how))))
            : w->findChild<QPushButton *>(how);
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
        QTest::addColumn<QString>("dialog"); // class/title; empty: nothing is shown

        // AfxMessageBox takes its title from the application's name; MessageBoxW ignores the
        // caption and keeps its form's title.
        const QString box = QStringLiteral("QMessageBox/Plant Monitor");
        const uint ok = MB_OK, yesno = MB_YESNO, ari = MB_ABORTRETRYIGNORE;
        QTest::newRow("afx ok, closed") << true << ok << "close" << IDOK << box;
        QTest::newRow("afx yesno, Yes") << true << yesno << "Yes" << IDYES << box;
        QTest::newRow("afx yesno, No") << true << yesno << "No" << IDNO << box;
        QTest::newRow("afx yesno, closed") << true << yesno << "close" << IDNO << box;
        QTest::newRow("afx abort, Abort") << true << ari << "Abort" << IDABORT << box;
        QTest::newRow("afx abort, Retry") << true << ari << "Retry" << IDRETRY << box;
        QTest::newRow("afx abort, Ignore") << true << ari << "Ignore" << IDIGNORE << box;
        QTest::newRow("afx abort, closed") << true << ari << "close" << IDABORT << box;
        // Compared as a whole number: any flag added makes the type unknown.
        QTest::newRow("afx okcancel") << true << uint(MB_OKCANCEL) << "close" << IDOK << "";
        QTest::newRow("afx yesno|icon") << true << (yesno | MB_ICONQUESTION) << "Yes" << IDOK << "";
        QTest::newRow("afx beyond the table") << true << 6u << "close" << IDOK << "";

        const QString ask = QStringLiteral("AskBoxDlg/Ask Dialog");
        QTest::newRow("W ok, closed") << false << ok << "close" << IDOK << "MessageBoxDlg/Dialog";
        QTest::newRow("W yesno, OK") << false << yesno << "pushButtonOK" << IDYES << ask;
        QTest::newRow("W yesno, Cancel") << false << yesno << "pushButtonCancel" << IDNO << ask;
        QTest::newRow("W yesno, Escape") << false << yesno << "escape" << IDNO << ask;
        // Unlike AfxMessageBox, abort/retry/ignore is not understood here.
        QTest::newRow("W abortretryignore") << false << ari << "close" << IDOK << "";
        QTest::newRow("W yesno|icon")
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
        QCOMPARE(responder.className + '/' + responder.title, dialog);
        QCOMPARE(responder.message, QString::fromUtf8(text));
    }

    void afxText()
    {
        // Bytes are read as Latin-1; the CString form hands over its UTF-8 bytes, read the same.
        ModalResponder responder(answer(QStringLiteral("Ok")));
        QCOMPARE(AfxMessageBox("Caf\xe9", MB_OK, 7), IDOK);
        QCOMPARE(responder.message, QStringLiteral("Caf\u00e9"));
        QCOMPARE(AfxMessageBox(CString("Caf\xc3\xa9"), MB_OK, 7), IDOK);
        QCOMPARE(responder.message, QStringLiteral("Caf\u00c3\u00a9"));
    }

    // What the constructors do to either form: fixed size without a help button, centred on
    // the cached screen, white text on black.
    void forms()
    {
        using P = QPalette;
        for (const bool ask : {false, true}) {
            QScopedPointer<QDialog> dialog(ask ? static_cast<QDialog *>(new AskBoxDlg)
                                               : new MessageBoxDlg);
            QCOMPARE(dialog->minimumSize(), dialog->maximumSize());
            QVERIFY(!(dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
            QCOMPARE(dialog->pos(),
                     QPoint(std::max((FitScreen::m_nScreenWidth - dialog->width()) / 2, 0),
                            std::max((FitScreen::m_nScreenHeight - dialog->height()) / 2, 0)));
            QVERIFY(dialog->autoFillBackground());
            QCOMPARE(dialog->palette().color(P::Inactive, P::Window), QColor(Qt::black));
            auto *label = dialog->findChild<QLabel *>(QStringLiteral("labelMessage"));
            QCOMPARE(label->palette().color(P::Disabled, P::WindowText), QColor(Qt::white));
        }
    }
};

QTEST_MAIN(tst_MessageBox)
#include "tst_messagebox.moc"
