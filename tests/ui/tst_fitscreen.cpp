// SPDX-License-Identifier: MIT
// FitScreen's arithmetic on explicit screen sizes and WidgetTool's sizing, placing and flags.
#include "DialogEx.h"
#include "FitScreen.h"
#include "WidgetTool.h"

#include <QDialog>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QtTest>

static void setCachedScreen(int width, int height)
{
    FitScreen::m_nScreenWidth = width;
    FitScreen::m_nScreenHeight = height;
}

class tst_FitScreen : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { setCachedScreen(0, 0); }

    void initTakesTheScreenOnce()
    {
        // Once either size is set it is kept.
        for (QSize cached : {QSize(0, 0), QSize(1234, 567), QSize(0, 567)}) {
            setCachedScreen(cached.width(), cached.height());
            FitScreen::Init();
            QCOMPARE(QSize(FitScreen::m_nScreenWidth, FitScreen::m_nScreenHeight),
                     cached.isNull() ? QGuiApplication::primaryScreen()->geometry().size()
                                     : cached);
        }
    }

    void fitting_data()
    {
        QTest::addColumn<bool>("centre"); // CenterWindow, else ModifyPos
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QRect>("before");
        QTest::addColumn<QRect>("after");
        QTest::addColumn<int>("points"); // a 10-point label's size after ModifyFontSize
        using R = QRect;
        using S = QSize;

        // ModifyPos and ModifyFontSize scale by screen width / 800, truncating. ModifyPos pulls a
        // window that would cross the right or bottom edge back to 10 pixels inside it.
        // Both directions use the width factor: 900 / 600 would give 1.5, not 2.
        QTest::newRow("doubled") << false << S(1600, 900) << R(100, 50, 200, 100)
                                 << R(200, 100, 400, 200) << 20;
        QTest::newRow("touching the edges stays")
            << false << S(800, 600) << R(600, 500, 200, 100) << R(600, 500, 200, 100) << 10;
        QTest::newRow("one past the edges")
            << false << S(800, 600) << R(601, 501, 200, 100) << R(590, 490, 200, 100) << 10;
        QTest::newRow("truncated, 1024")
            << false << S(1024, 768) << R(101, 33, 99, 51) << R(129, 42, 126, 65) << 12;
        QTest::newRow("centre, halves truncated")
            << true << S(800, 600) << R(0, 0, 691, 191) << R(54, 204, 691, 191) << 10;
        QTest::newRow("centre, larger than the screen")
            << true << S(640, 480) << R(9, 9, 1000, 900) << R(0, 0, 1000, 900) << 8;
    }

    void fitting()
    {
        QFETCH(bool, centre);
        QFETCH(QSize, screen);
        QFETCH(QRect, before);
        QFETCH(QRect, after);
        QFETCH(int, points);
        QWidget w;
        if (!centre) { // the explicit sizes win over the cached ones
            setCachedScreen(3000, 2000);
            w.setGeometry(before);
            FitScreen::ModifyPos(&w, screen.width(), screen.height());
            QCOMPARE(QRect(w.pos(), w.size()), after);
        }
        // With no explicit size the cached screen size is used.
        setCachedScreen(screen.width(), screen.height());
        w.setGeometry(before);
        centre ? FitScreen::CenterWindow(&w) : FitScreen::ModifyPos(&w, 0, 0);
        QCOMPARE(QRect(w.pos(), w.size()), after);

        QLabel label;
        label.setFont(QFont(label.font().family(), 10));
        FitScreen::ModifyFontSize(&label);
        QCOMPARE(label.font().pointSize(), points); // truncated: 10 * 1024 / 800 is 12.8
    }

    void showing_data()
    {
        QTest::addColumn<int>("topmost"); // Topmost(w, topmost), ExecuteShow(w) when -1
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("after");

        const int onTop = Qt::Window | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint;
        QTest::newRow("Topmost on") << 1 << int(Qt::Window) << onTop;
        QTest::newRow("Topmost off") << 0 << onTop << int(Qt::Window);
        // The XOR toggles: switching off a window that was not on top puts it on top.
        QTest::newRow("Topmost off when not on top") << 0 << int(Qt::Window) << onTop;
        // Only the stays-on-top bit survives the first step, and the second clears it.
        QTest::newRow("ExecuteShow: a plain window, not on top")
            << -1 << int(Qt::Tool | Qt::WindowStaysOnTopHint) << int(Qt::Window);
    }

    void showing()
    {
        QFETCH(int, topmost);
        QFETCH(int, before);
        QFETCH(int, after);
        QWidget w(nullptr, Qt::WindowFlags(before));
        topmost < 0 ? WidgetTool::ExecuteShow(&w) : FitScreen::Topmost(&w, topmost);
        QVERIFY(w.isVisible());
        const int mask = Qt::WindowType_Mask | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint;
        QCOMPARE(int(w.windowFlags()) & mask, after);
    }

    void fixSizeAndHideHelp()
    {
        const QRect centred =
            QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(300, 200),
                                QGuiApplication::primaryScreen()->availableGeometry());
        for (const bool resizable : {false, true}) { // a resizable one that fits is not wrapped
            const int before = QApplication::topLevelWidgets().size();
            QDialog dialog;
            dialog.resize(300, 200);
            WidgetTool::FixSizeAndHideHelp(&dialog, resizable);
            QCOMPARE(dialog.minimumSize(), QSize(300, 200));
            QCOMPARE(dialog.maximumSize(), QSize(300, 200));
            QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
            QCOMPARE(QApplication::topLevelWidgets().size(), before + 1);
            QCOMPARE(dialog.geometry(), centred);
            // Freed again: any size from nothing up to Qt's limit.
            WidgetTool::SetFixedSize(&dialog, false);
            QCOMPARE(dialog.minimumSize(), QSize(0, 0));
            QCOMPARE(dialog.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
            dialog.resize(120, 90);
            WidgetTool::SetFixedSize(&dialog, true);
            QCOMPARE(dialog.maximumSize(), QSize(120, 90));
        }
    }

    void resizableWrapper()
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QPointer<QDialog> big = new QDialog;
        const QSize size(screen.width() + 200, screen.height() + 100);
        big->resize(size);
        WidgetTool::FixSizeAndHideHelp(big, true);
        QPointer<DialogEx> wrapper = qobject_cast<DialogEx *>(big->window());
        QVERIFY(wrapper && wrapper->isVisible());
        QCOMPARE(wrapper->m_pChildWindow.data(), big.data());
        QCOMPARE(wrapper->size(), QSize(screen.width(), screen.height() - 24));
        auto *area = wrapper->findChild<QScrollArea *>();
        QVERIFY(area && area->widget() == big.data());
        QCOMPARE(big->minimumSize(), size);
        // Closing the wrapper takes the wrapped dialog with it, and the wrapper goes too.
        wrapper->close();
        QVERIFY(big.isNull());
        QTRY_VERIFY(wrapper.isNull());
    }
};

QTEST_MAIN(tst_FitScreen)
#include "tst_fitscreen.moc"
