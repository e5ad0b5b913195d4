// FitScreen's arithmetic on explicit screen sizes and WidgetTool's sizing, placing and flags.
#include "DialogEx.h"
#include "FitScreen.h"
#include "WidgetTool.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTemporaryDir>
#include <QtTest>

using Show = std::function<void(QWidget *)>;
Q_DECLARE_METATYPE(Show)

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
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        setCachedScreen(0, 0);
        FitScreen::Init();
        QCOMPARE(QSize(FitScreen::m_nScreenWidth, FitScreen::m_nScreenHeight), screen.size());
        // Once either size is set it is kept.
        for (QSize cached : {QSize(1234, 567), QSize(0, 567)}) {
            setCachedScreen(cached.width(), cached.height());
            FitScreen::Init();
            QCOMPARE(QSize(FitScreen::m_nScreenWidth, FitScreen::m_nScreenHeight), cached);
        }
    }

    void fitting_data()
    {
        QTest::addColumn<bool>("centre"); // CenterWindow, else ModifyPos
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QRect>("before");
        QTest::addColumn<QRect>("after");
        QTest::addColumn<int>("points"); // a 10-point label's size after ModifyFontSize

        // ModifyPos and ModifyFontSize scale by screen width / 800, truncating. ModifyPos pulls a
        // window that would cross the right or bottom edge back to 10 pixels inside it.
        QTest::newRow("doubled") << false << QSize(1600, 900) << QRect(100, 50, 200, 100)
                                 << QRect(200, 100, 400, 200) << 20;
        QTest::newRow("touching the right edge stays")
            << false << QSize(800, 600) << QRect(600, 0, 200, 100) << QRect(600, 0, 200, 100) << 10;
        QTest::newRow("one past the right edge")
            << false << QSize(800, 600) << QRect(601, 0, 200, 100) << QRect(590, 0, 200, 100) << 10;
        QTest::newRow("touching the bottom stays")
            << false << QSize(800, 600) << QRect(0, 500, 100, 100) << QRect(0, 500, 100, 100) << 10;
        QTest::newRow("one past the bottom")
            << false << QSize(800, 600) << QRect(0, 501, 100, 100) << QRect(0, 490, 100, 100) << 10;
        QTest::newRow("truncated, 1024")
            << false << QSize(1024, 768) << QRect(101, 33, 99, 51) << QRect(129, 42, 126, 65) << 12;
        // Both directions use the width factor: 1280 / 800 = 1.6, though 720 / 600 would be 1.2.
        QTest::newRow("height scales by width")
            << false << QSize(1280, 720) << QRect(0, 100, 100, 100) << QRect(0, 160, 160, 160)
            << 16;

        QTest::newRow("centre, halves truncated")
            << true << QSize(800, 600) << QRect(0, 0, 691, 191) << QRect(54, 204, 691, 191) << 10;
        QTest::newRow("centre, wider than the screen")
            << true << QSize(640, 480) << QRect(9, 9, 1000, 100) << QRect(0, 190, 1000, 100) << 8;
        QTest::newRow("centre, taller than the screen")
            << true << QSize(1024, 768) << QRect(9, 9, 24, 900) << QRect(500, 0, 24, 900) << 12;
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
        QTest::addColumn<Show>("show");
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("after");

        const int onTop = Qt::Window | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint;
        const Show on = [](QWidget *w) { FitScreen::Topmost(w, true); };
        const Show off = [](QWidget *w) { FitScreen::Topmost(w, false); };
        QTest::newRow("Topmost on") << on << int(Qt::Window) << onTop;
        QTest::newRow("Topmost off") << off << onTop << int(Qt::Window);
        // The XOR toggles: switching off a window that was not on top puts it on top.
        QTest::newRow("Topmost off when not on top") << off << int(Qt::Window) << onTop;
        // Only the stays-on-top bit survives the first step, and the second clears it.
        QTest::newRow("ExecuteShow: a plain window, not on top")
            << Show(&WidgetTool::ExecuteShow) << int(Qt::Tool | Qt::WindowStaysOnTopHint)
            << int(Qt::Window);
    }

    void showing()
    {
        QFETCH(Show, show);
        QFETCH(int, before);
        QFETCH(int, after);

        QWidget w(nullptr, Qt::WindowFlags(before));
        show(&w);
        QVERIFY(w.isVisible());
        const int mask = Qt::WindowType_Mask | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint;
        QCOMPARE(int(w.windowFlags()) & mask, after);
    }

    void setButtonColor()
    {
        // COLORREF is 0x00BBGGRR, its top byte ignored.
        QPushButton button;
        WidgetTool::SetButtonColor(&button, 0xAB336699u);
        QVERIFY(button.isFlat());
        QVERIFY(button.autoFillBackground());
        for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            QCOMPARE(button.palette().color(group, QPalette::Button), QColor(0x99, 0x66, 0x33));
    }

    void fixSizeAndHideHelp_data()
    {
        QTest::addColumn<bool>("resizable");
        QTest::newRow("fixed") << false;
        QTest::newRow("resizable, fits the screen") << true;
    }

    void fixSizeAndHideHelp()
    {
        QFETCH(bool, resizable);

        const int before = QApplication::topLevelWidgets().size();
        QDialog dialog;
        QVERIFY(dialog.windowFlags() & Qt::WindowContextHelpButtonHint);
        dialog.resize(300, 200);
        WidgetTool::FixSizeAndHideHelp(&dialog, resizable);
        QCOMPARE(dialog.minimumSize(), QSize(300, 200));
        QCOMPARE(dialog.maximumSize(), QSize(300, 200));
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QCOMPARE(QApplication::topLevelWidgets().size(), before + 1); // not wrapped
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(dialog.geometry(),
                 QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(300, 200), available));
    }

    void resizableWrapper()
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QPointer<QDialog> big = new QDialog;
        big->setWindowTitle(QStringLiteral("Recipe editor"));
        const QSize size(screen.width() + 200, screen.height() + 100);
        big->resize(size);

        WidgetTool::FixSizeAndHideHelp(big, true);
        QPointer<DialogEx> wrapper = qobject_cast<DialogEx *>(big->window());
        QVERIFY(wrapper);
        QCOMPARE(wrapper->m_pChildWindow.data(), big.data());
        QVERIFY(wrapper->isVisible());
        QCOMPARE(wrapper->windowTitle(), QStringLiteral("Recipe editor"));
        QVERIFY(!(wrapper->windowFlags() & Qt::WindowContextHelpButtonHint));
        QCOMPARE(wrapper->size(), QSize(screen.width(), screen.height() - 24));
        auto *area = wrapper->findChild<QScrollArea *>();
        QVERIFY(area);
        QCOMPARE(area->widget(), big.data());
        QCOMPARE(area->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
        QCOMPARE(area->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
        QCOMPARE(big->minimumSize(), size);

        // Closing the wrapper takes the wrapped dialog with it, and the wrapper goes too.
        wrapper->close();
        QVERIFY(big.isNull());
        QTRY_VERIFY(wrapper.isNull());
    }

    void scaledImage_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<QSize>("expected"); // in a 100 x 100 label

        QTest::newRow("wide image") << QSize(200, 100) << QSize(100, 50);
        QTest::newRow("tall image") << QSize(100, 400) << QSize(25, 100);
    }

    void scaledImage()
    {
        QFETCH(QSize, image);
        QFETCH(QSize, expected);

        QPixmap pixmap(image);
        pixmap.fill(Qt::darkCyan);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("image.png"));
        QVERIFY(pixmap.save(file));
        QLabel label;
        label.resize(100, 100);
        FitScreen::SetScaledImage(&label, &pixmap);
        QCOMPARE(label.pixmap(Qt::ReturnByValue).size(), expected);
        label.clear();
        FitScreen::SetScaledImage(&label, file);
        QCOMPARE(label.pixmap(Qt::ReturnByValue).size(), expected);
        // An unreadable file leaves what the label showed.
        FitScreen::SetScaledImage(&label, dir.filePath(QStringLiteral("missing.png")));
        QCOMPARE(label.pixmap(Qt::ReturnByValue).size(), expected);
    }
};

QTEST_MAIN(tst_FitScreen)
#include "tst_fitscreen.moc"
