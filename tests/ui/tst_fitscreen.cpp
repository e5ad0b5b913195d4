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

class tst_FitScreen : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void initTakesTheScreenOnce_data();
    void initTakesTheScreenOnce();
    void modifyPos_data();
    void modifyPos();
    void modifyFontSize_data();
    void modifyFontSize();
    void centerWindow_data();
    void centerWindow();
    void topmost_data();
    void topmost();
    void executeShow();
    void setButtonColor_data();
    void setButtonColor();
    void fixSizeAndHideHelp_data();
    void fixSizeAndHideHelp();
    void resizableWrapper();
    void scaledImage_data();
    void scaledImage();
};

static QRect primaryScreen()
{
    return QGuiApplication::primaryScreen()->geometry();
}

void tst_FitScreen::cleanup()
{
    FitScreen::m_nScreenWidth = 0;
    FitScreen::m_nScreenHeight = 0;
}

void tst_FitScreen::initTakesTheScreenOnce_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("filled");

    QTest::newRow("empty cache") << 0 << 0 << true;
    QTest::newRow("already taken") << 1234 << 567 << false;
    QTest::newRow("only the height set") << 0 << 567 << false;
}

void tst_FitScreen::initTakesTheScreenOnce()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(bool, filled);

    FitScreen::m_nScreenWidth = width;
    FitScreen::m_nScreenHeight = height;
    FitScreen::Init();
    QCOMPARE(FitScreen::m_nScreenWidth, filled ? primaryScreen().width() : width);
    QCOMPARE(FitScreen::m_nScreenHeight, filled ? primaryScreen().height() : height);
}

void tst_FitScreen::modifyPos_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QRect>("before");
    QTest::addColumn<QRect>("after");

    QTest::newRow("doubled") << QSize(1600, 900) << QRect(100, 50, 200, 100)
                             << QRect(200, 100, 400, 200);
    QTest::newRow("past the right edge")
        << QSize(800, 600) << QRect(700, 0, 200, 100) << QRect(590, 0, 200, 100);
    QTest::newRow("touching the right edge stays")
        << QSize(800, 600) << QRect(600, 0, 200, 100) << QRect(600, 0, 200, 100);
    QTest::newRow("one past the right edge")
        << QSize(800, 600) << QRect(601, 0, 200, 100) << QRect(590, 0, 200, 100);
    QTest::newRow("touching the bottom stays")
        << QSize(800, 600) << QRect(0, 500, 100, 100) << QRect(0, 500, 100, 100);
    QTest::newRow("past the bottom")
        << QSize(800, 600) << QRect(0, 501, 100, 100) << QRect(0, 490, 100, 100);
    QTest::newRow("truncated, 1024")
        << QSize(1024, 768) << QRect(101, 33, 99, 51) << QRect(129, 42, 126, 65);
    QTest::newRow("truncated, 640")
        << QSize(640, 480) << QRect(99, 99, 99, 99) << QRect(79, 79, 79, 79);
    // Both directions use the width factor: 1280 / 800 = 1.6, though 720 / 600 would be 1.2.
    QTest::newRow("height scales by width")
        << QSize(1280, 720) << QRect(0, 100, 100, 100) << QRect(0, 160, 160, 160);
    QTest::newRow("wider than the screen")
        << QSize(800, 600) << QRect(0, 0, 900, 100) << QRect(-110, 0, 900, 100);
}

void tst_FitScreen::modifyPos()
{
    QFETCH(QSize, screen);
    QFETCH(QRect, before);
    QFETCH(QRect, after);

    FitScreen::m_nScreenWidth = 3000; // the explicit sizes must win over the cached ones
    FitScreen::m_nScreenHeight = 2000;
    QWidget w;
    w.setGeometry(before);
    FitScreen::ModifyPos(&w, screen.width(), screen.height());
    QCOMPARE(QRect(w.pos(), w.size()), after);

    // With no explicit size the cached screen size is used.
    FitScreen::m_nScreenWidth = screen.width();
    FitScreen::m_nScreenHeight = screen.height();
    w.setGeometry(before);
    FitScreen::ModifyPos(&w, 0, 0);
    QCOMPARE(QRect(w.pos(), w.size()), after);
}

void tst_FitScreen::modifyFontSize_data()
{
    QTest::addColumn<int>("screenWidth");
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("expected");

    QTest::newRow("1024, 10 pt") << 1024 << 10 << 12;
    QTest::newRow("1024, 9 pt truncates 11.52") << 1024 << 9 << 11;
    QTest::newRow("1280, 11 pt truncates 17.6") << 1280 << 11 << 17;
    QTest::newRow("800 unchanged") << 800 << 13 << 13;
    QTest::newRow("640, 9 pt truncates 7.2") << 640 << 9 << 7;
}

void tst_FitScreen::modifyFontSize()
{
    QFETCH(int, screenWidth);
    QFETCH(int, points);
    QFETCH(int, expected);

    FitScreen::m_nScreenWidth = screenWidth;
    FitScreen::m_nScreenHeight = 600;
    QLabel label;
    QFont font = label.font();
    font.setPointSize(points);
    label.setFont(font);
    FitScreen::ModifyFontSize(&label);
    QCOMPARE(label.font().pointSize(), expected);
}

void tst_FitScreen::centerWindow_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("pos");

    QTest::newRow("halves truncated") << QSize(800, 600) << QSize(691, 191) << QPoint(54, 204);
    QTest::newRow("wider than the screen") << QSize(800, 600) << QSize(1000, 100) << QPoint(0, 250);
    QTest::newRow("taller than the screen") << QSize(1024, 768) << QSize(24, 900) << QPoint(500, 0);
    QTest::newRow("exactly the screen") << QSize(1024, 768) << QSize(1024, 768) << QPoint(0, 0);
}

void tst_FitScreen::centerWindow()
{
    QFETCH(QSize, screen);
    QFETCH(QSize, size);
    QFETCH(QPoint, pos);

    FitScreen::m_nScreenWidth = screen.width();
    FitScreen::m_nScreenHeight = screen.height();
    QWidget w;
    w.resize(size);
    FitScreen::CenterWindow(&w);
    QCOMPARE(w.pos(), pos);
    QCOMPARE(w.size(), size);
}

void tst_FitScreen::topmost_data()
{
    QTest::addColumn<bool>("startOnTop");
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("endOnTop");

    QTest::newRow("on") << false << true << true;
    QTest::newRow("off") << true << false << false;
    // The XOR toggles: switching off a window that was not on top puts it on top.
    QTest::newRow("off when not on top") << false << false << true;
}

void tst_FitScreen::topmost()
{
    QFETCH(bool, startOnTop);
    QFETCH(bool, on);
    QFETCH(bool, endOnTop);

    const Qt::WindowFlags bits = Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint;
    QWidget w;
    w.setWindowFlags(startOnTop ? Qt::Window | bits : Qt::Window);
    FitScreen::Topmost(&w, on);
    QCOMPARE(w.windowFlags() & bits, endOnTop ? bits : Qt::WindowFlags());
    QVERIFY(w.isVisible());
}

void tst_FitScreen::executeShow()
{
    // Only the stays-on-top bit survives the first step, and the second clears it: the tool
    // window comes out as a plain window that is not on top.
    QWidget w(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint);
    WidgetTool::ExecuteShow(&w);
    QVERIFY(w.isVisible());
    QVERIFY(!(w.windowFlags() & Qt::WindowStaysOnTopHint));
    QCOMPARE(w.windowType(), Qt::Window);
}

void tst_FitScreen::setButtonColor_data()
{
    QTest::addColumn<quint32>("colorref");
    QTest::addColumn<QColor>("expected");

    QTest::newRow("red in the low byte") << 0x000000FFu << QColor(255, 0, 0);
    QTest::newRow("blue in the third byte") << 0x00FF0000u << QColor(0, 0, 255);
    QTest::newRow("mixed") << 0x00336699u << QColor(0x99, 0x66, 0x33);
    QTest::newRow("top byte ignored") << 0xAB102030u << QColor(0x30, 0x20, 0x10);
}

void tst_FitScreen::setButtonColor()
{
    QFETCH(quint32, colorref);
    QFETCH(QColor, expected);

    QPushButton button;
    WidgetTool::SetButtonColor(&button, colorref);
    QVERIFY(button.isFlat());
    QVERIFY(button.autoFillBackground());
    for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(button.palette().color(group, QPalette::Button), expected);
}

void tst_FitScreen::fixSizeAndHideHelp_data()
{
    QTest::addColumn<bool>("resizable");

    QTest::newRow("fixed") << false;
    QTest::newRow("resizable, fits the screen") << true;
}

void tst_FitScreen::fixSizeAndHideHelp()
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
    QVERIFY(dialog.isWindow());
    QCOMPARE(QApplication::topLevelWidgets().size(), before + 1);
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QCOMPARE(dialog.geometry(),
             QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(300, 200), available));
}

void tst_FitScreen::resizableWrapper()
{
    const QRect screen = primaryScreen();
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
    QCOMPARE(big->size(), size);
    QCOMPARE(big->minimumSize(), size);

    // Closing the wrapper takes the wrapped dialog with it, and the wrapper goes too.
    wrapper->close();
    QVERIFY(big.isNull());
    QTRY_VERIFY(wrapper.isNull());
}

void tst_FitScreen::scaledImage_data()
{
    QTest::addColumn<QSize>("image");
    QTest::addColumn<QSize>("label");
    QTest::addColumn<QSize>("expected");

    QTest::newRow("wide image") << QSize(200, 100) << QSize(100, 100) << QSize(100, 50);
    QTest::newRow("tall image") << QSize(100, 400) << QSize(100, 100) << QSize(25, 100);
}

void tst_FitScreen::scaledImage()
{
    QFETCH(QSize, image);
    QFETCH(QSize, label);
    QFETCH(QSize, expected);

    QPixmap pixmap(image);
    pixmap.fill(Qt::darkCyan);
    QLabel byPixmap;
    byPixmap.resize(label);
    FitScreen::SetScaledImage(&byPixmap, &pixmap);
    QCOMPARE(byPixmap.pixmap(Qt::ReturnByValue).size(), expected);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString file = dir.filePath(QStringLiteral("image.png"));
    QVERIFY(pixmap.save(file));
    QLabel byFile;
    byFile.resize(label);
    FitScreen::SetScaledImage(&byFile, file);
    QCOMPARE(byFile.pixmap(Qt::ReturnByValue).size(), expected);

    // An unreadable file leaves what the label showed.
    FitScreen::SetScaledImage(&byFile, dir.filePath(QStringLiteral("missing.png")));
    QCOMPARE(byFile.pixmap(Qt::ReturnByValue).size(), expected);
}

QTEST_MAIN(tst_FitScreen)
#include "tst_fitscreen.moc"
