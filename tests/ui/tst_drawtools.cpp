#include <CBrush.h>
#include <CDrawTools.h>

#include <QPainter>
#include <QWidget>
#include <QtTest>

#include <functional>

using Draw = std::function<void(CDrawTools &, QPainter *)>;
Q_DECLARE_METATYPE(Draw)

namespace {

const QRgb Background = qRgb(0x10, 0x20, 0x30);
const QRgb Red = qRgb(0xFF, 0, 0);        // COLORREF 0x0000FF
const QRgb Green = qRgb(0, 0xFF, 0);      // COLORREF 0x00FF00
const QRgb Face = qRgb(0x99, 0x66, 0x33); // COLORREF 0x336699
const QRgb White = qRgb(0xFF, 0xFF, 0xFF);
const QRgb Grey = qRgb(0x7F, 0x7F, 0x7F);
const QRgb Black = qRgb(0, 0, 0);
const QRgb Magenta = qRgb(0xFF, 0, 0xFF);

QImage render(const Draw &draw, int lineThick = 1, QSize size = QSize(32, 32))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Background);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    CDrawTools tools;
    tools.SetLineThick(lineThick);
    draw(tools, &painter);
    return image;
}

QRgb at(const QImage &image, int x, int y)
{
    return image.pixel(x, y) | 0xFF000000u;
}

/// The smallest rectangle holding every pixel that is not background.
QRect paintedBounds(const QImage &image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (at(image, x, y) != Background)
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

/**
 * Checks that the ring l..r, t..b is `edge`, the pixels inside it `inside` and everything
 * else background. Returns the first wrong pixel, or an empty text.
 */
QString checkBox(const QImage &image, QRect box, QRgb edge, QRgb inside)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QRgb want = Background;
            if (box.contains(x, y))
                want = (x == box.left() || x == box.right() || y == box.top() || y == box.bottom())
                    ? edge
                    : inside;
            if (at(image, x, y) != want)
                return QStringLiteral("pixel (%1, %2) is %3, expected %4")
                    .arg(x)
                    .arg(y)
                    .arg(at(image, x, y), 8, 16)
                    .arg(want, 8, 16);
        }
    }
    return QString();
}

int countColor(const QImage &image, QRgb color, QRect area)
{
    int n = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            n += at(image, x, y) == color;
    return n;
}

enum BoxKind { Pop, Push, PopSmall, PushSmall };

} // namespace

Q_DECLARE_METATYPE(BoxKind)

/// A widget whose paint event draws a fixed picture and then lets a test draw on it.
class Canvas : public QWidget
{
public:
    std::function<void(QWidget *)> extra;

protected:
    void paintEvent(QPaintEvent *) override
    {
        {
            QPainter p(this);
            p.fillRect(rect(), QColor(Background));
            p.fillRect(QRect(0, 0, width() / 2, height()), QColor(0x40, 0x80, 0xC0));
        }
        if (extra)
            extra(this);
    }
};

class tst_DrawTools : public QObject
{
    Q_OBJECT

private slots:
    void rectangles_data();
    void rectangles();
    void shapeBounds_data();
    void shapeBounds();
    void lineWidths_data();
    void lineWidths();
    void boxes_data();
    void boxes();
    void triangleApex_data();
    void triangleApex();
    void degenerateShapesDrawNothing_data();
    void degenerateShapesDrawNothing();
    void polygonFillsOddEven();
    void xorRectangleRestores();
    void widgetFormsOnlyInPaintEvent();
};

void tst_DrawTools::rectangles_data()
{
    QTest::addColumn<Draw>("draw");
    QTest::addColumn<QRect>("box");
    QTest::addColumn<QRgb>("edge");
    QTest::addColumn<QRgb>("inside");

    const QRect box(QPoint(2, 3), QPoint(12, 9));
    QTest::newRow("outline") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawRect(p, 2, 3, 12, 9, 0x0000FF);
    }) << box << Red << Background;
    QTest::newRow("filled") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawRect(p, 2, 3, 12, 9, 0x0000FF, 0x00FF00, -1);
    }) << box << Red << Green;
    QTest::newRow("border equals fill") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawRect(p, 0, 0, 10, 10, 0x336699, 0x336699, -1);
    }) << QRect(QPoint(0, 0), QPoint(10, 10))
                                        << Face << Face;
    QTest::newRow("hatch 0 fills solid") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawRect(p, 2, 3, 12, 9, 0x0000FF, 0x00FF00, 0);
    }) << box << Red << Green;
    QTest::newRow("hatch 5 leaves inside") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawRect(p, 2, 3, 12, 9, 0x0000FF, 0x00FF00, 5);
    }) << box << Red << Background;
    QTest::newRow("hatch 5, equal colours: nothing") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawRect(p, 2, 3, 12, 9, 0x00FF00, 0x00FF00, 5);
    }) << QRect() << Red << Red;
    QTest::newRow("xor on background")
        << Draw([](CDrawTools &t, QPainter *p) { t.DrawRectXor(p, CRect(2, 3, 12, 9)); }) << box
        << qRgb(0xEF, 0xDF, 0xCF) << Background;
}

void tst_DrawTools::rectangles()
{
    QFETCH(Draw, draw);
    QFETCH(QRect, box);
    QFETCH(QRgb, edge);
    QFETCH(QRgb, inside);
    const QString wrong = checkBox(render(draw), box, edge, inside);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_DrawTools::shapeBounds_data()
{
    QTest::addColumn<Draw>("draw");
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("centre");
    QTest::addColumn<QRgb>("centreColor");

    const QRect r(QPoint(3, 4), QPoint(25, 20));
    QTest::newRow("ellipse") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawEllipse(p, 3, 4, 25, 20, 0x0000FF);
    }) << r << QPoint(14, 12) << Background;
    QTest::newRow("filled ellipse") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawEllipse(p, CRect(3, 4, 25, 20), 0x0000FF, 0x00FF00);
    }) << r << QPoint(14, 12) << Green;
    QTest::newRow("round rect") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawRoundRect(p, 3, 4, 25, 20, 0x0000FF);
    }) << r << QPoint(14, 12) << Background;
    QTest::newRow("line, both ends")
        << Draw([](CDrawTools &t, QPainter *p) { t.DrawLine(p, 4, 7, 20, 7, 0x0000FF); })
        << QRect(QPoint(4, 7), QPoint(20, 7)) << QPoint(12, 7) << Red;
    QTest::newRow("polyline") << Draw([](CDrawTools &t, QPainter *p) {
        CPoint pts[] = {CPoint(2, 2), CPoint(20, 2), CPoint(20, 15)};
        t.DrawPolyline(p, pts, 3, 0x0000FF);
    }) << QRect(QPoint(2, 2), QPoint(20, 15))
                              << QPoint(20, 2) << Red;
}

void tst_DrawTools::shapeBounds()
{
    QFETCH(Draw, draw);
    QFETCH(QRect, bounds);
    QFETCH(QPoint, centre);
    QFETCH(QRgb, centreColor);
    const QImage image = render(draw);
    QCOMPARE(paintedBounds(image), bounds);
    QCOMPARE(at(image, centre.x(), centre.y()), centreColor);
    // An ellipse's outline does not reach the corners of its rectangle.
    if (QByteArray(QTest::currentDataTag()).contains("ellipse"))
        QCOMPARE(at(image, bounds.left(), bounds.top()), Background);
}

void tst_DrawTools::lineWidths_data()
{
    QTest::addColumn<Draw>("draw");
    QTest::addColumn<int>("thick");
    QTest::addColumn<int>("rows"); // painted rows crossing column 10

    const Draw solidLine = [](CDrawTools &t, QPainter *p) { t.DrawLine(p, 2, 10, 20, 10, 0xFF); };
    const Draw dashLine = [](CDrawTools &t, QPainter *p) { t.DrawLine(p, 2, 10, 20, 10, 0xFF, 2); };
    const Draw solidPolyline = [](CDrawTools &t, QPainter *p) {
        CPoint pts[] = {CPoint(2, 10), CPoint(20, 10)};
        t.DrawPolyline(p, pts, 2, 0xFF, 1);
    };
    const Draw dotPolyline = [](CDrawTools &t, QPainter *p) {
        CPoint pts[] = {CPoint(2, 10), CPoint(20, 10)};
        t.DrawPolyline(p, pts, 2, 0xFF, 3);
    };
    QTest::newRow("line, thickness 1") << solidLine << 1 << 1;
    QTest::newRow("line, thickness 3") << solidLine << 3 << 3;
    QTest::newRow("dashed line, thickness 3") << dashLine << 3 << 3;
    QTest::newRow("polyline, thickness 3") << solidPolyline << 3 << 3;
    QTest::newRow("dotted polyline stays thin") << dotPolyline << 3 << 1;
}

void tst_DrawTools::lineWidths()
{
    QFETCH(Draw, draw);
    QFETCH(int, thick);
    QFETCH(int, rows);
    const QImage image = render(draw, thick);
    QCOMPARE(countColor(image, Red, QRect(2, 0, 1, 32)), rows); // column 2: every style paints it
}

void tst_DrawTools::boxes_data()
{
    QTest::addColumn<BoxKind>("kind");
    QTest::addColumn<QStringList>("picture");

    // The box on 1, 1, 12, 10 pixel by pixel: K black, W white, G grey 0x7F7F7F, F the face.
    const QString empty = QStringLiteral("..............");
    const QString frame = QStringLiteral(".KKKKKKKKKKKK.");
    QTest::newRow("raised") << Pop
                            << QStringList {empty,
                                            frame,
                                            QStringLiteral(".KWWWWWWWWWGK."),
                                            QStringLiteral(".KWWWWWWWWGGK."),
                                            QStringLiteral(".KWWFFFFFFGGK."),
                                            QStringLiteral(".KWWFFFFFFGGK."),
                                            QStringLiteral(".KWWFFFFFFGGK."),
                                            QStringLiteral(".KWWFFFFFFGGK."),
                                            QStringLiteral(".KWGGGGGGGGGK."),
                                            QStringLiteral(".KGGGGGGGGGGK."),
                                            frame,
                                            empty};
    // The frame shifted to the lower right covers the outer white bevel there.
    QTest::newRow("sunken") << Push
                            << QStringList {empty,
                                            QStringLiteral(".GGGGGGGGGGGW."),
                                            QStringLiteral(".GGGGGGGGGGWW."),
                                            QStringLiteral(".GGKKKKKKKKKK."),
                                            QStringLiteral(".GGKFFFFFFFWK."),
                                            QStringLiteral(".GGKFFFFFFFWK."),
                                            QStringLiteral(".GGKFFFFFFFWK."),
                                            QStringLiteral(".GGKFFFFFFFWK."),
                                            QStringLiteral(".GGKFFFFFFFWK."),
                                            QStringLiteral(".GWKWWWWWWWWK."),
                                            QStringLiteral(".WWKKKKKKKKKK."),
                                            empty};
    const QString face = QStringLiteral(".KWFFFFFFFFGK.");
    const QStringList small {
        empty, frame, QStringLiteral(".KWWWWWWWWWGK."), face,  face, face, face,
        face,  face,  QStringLiteral(".KGGGGGGGGGGK."), frame, empty};
    QTest::newRow("small raised") << PopSmall << small;
    // The small sunken box is the small raised one with white and grey exchanged.
    QStringList sunken = small;
    for (QString &row : sunken)
        for (QChar &c : row)
            c = c == QLatin1Char('W')   ? QLatin1Char('G')
                : c == QLatin1Char('G') ? QLatin1Char('W')
                                        : c;
    QTest::newRow("small sunken") << PushSmall << sunken;
}

void tst_DrawTools::boxes()
{
    QFETCH(BoxKind, kind);
    QFETCH(QStringList, picture);
    // A thick line setting must not widen the bevels, and the small boxes' own pen (magenta)
    // is covered entirely by the bevels and the frame.
    const QImage image = render(
        [kind](CDrawTools &t, QPainter *p) {
            p->setPen(QColor(Magenta));
            CBrush brush;
            brush.CreateSolidBrush(0x336699);
            switch (kind) {
            case Pop:
                t.DrawPopBox(p, 1, 1, 12, 10, 0x336699);
                break;
            case Push:
                t.DrawPushBox(p, CRect(1, 1, 12, 10), 0x336699);
                break;
            case PopSmall:
                t.DrawPopBoxSmall(p, 1, 1, 12, 10, brush);
                break;
            case PushSmall:
                t.DrawPushBoxSmall(p, CRect(1, 1, 12, 10), 0x336699L);
                break;
            }
        },
        3, QSize(14, 12));
    const QHash<QChar, QRgb> colors {{QLatin1Char('.'), Background},
                                     {QLatin1Char('K'), Black},
                                     {QLatin1Char('W'), White},
                                     {QLatin1Char('G'), Grey},
                                     {QLatin1Char('F'), Face}};
    QStringList got;
    for (int y = 0; y < image.height(); ++y) {
        QString row;
        for (int x = 0; x < image.width(); ++x)
            row += colors.key(at(image, x, y), QLatin1Char('?'));
        got << row;
    }
    QCOMPARE(got.join(QLatin1Char('\n')), picture.join(QLatin1Char('\n')));
}

void tst_DrawTools::triangleApex_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<QPoint>("apex");
    QTest::addColumn<bool>("apexOnRow"); // the apex is alone on its row (else on its column)
    QTest::addColumn<QPoint>("base");    // the base's end at the left or top

    // Rectangle 4, 6, 24, 20: CenterPoint (13, 12).
    QTest::newRow("0 up") << 0 << QPoint(14, 6) << true << QPoint(4, 20);
    QTest::newRow("1 down") << 1 << QPoint(14, 20) << true << QPoint(4, 6);
    QTest::newRow("2 left") << 2 << QPoint(4, 13) << false << QPoint(24, 6);
    QTest::newRow("3 right") << 3 << QPoint(24, 13) << false << QPoint(4, 6);
}

void tst_DrawTools::triangleApex()
{
    QFETCH(int, direction);
    QFETCH(QPoint, apex);
    QFETCH(bool, apexOnRow);
    QFETCH(QPoint, base);
    for (bool fromRect : {true, false}) {
        const QImage image = render([&](CDrawTools &t, QPainter *p) {
            if (fromRect)
                t.DrawTriangle(p, CRect(4, 6, 24, 20), direction, 0x0000FF, 0x00FF00);
            else
                t.DrawTriangle(p, 4, 6, 24, 20, direction, 0x0000FF, 0x00FF00);
        });
        QVERIFY(QRect(QPoint(4, 6), QPoint(24, 20)).contains(paintedBounds(image)));
        QCOMPARE(at(image, apex.x(), apex.y()), Red);
        QCOMPARE(at(image, base.x(), base.y()), Red);
        const QRect line = apexOnRow ? QRect(0, apex.y(), 32, 1) : QRect(apex.x(), 0, 1, 32);
        QCOMPARE(countColor(image, Red, line), 1);
        QCOMPARE(at(image, 14, 13), Green);
    }
}

void tst_DrawTools::degenerateShapesDrawNothing_data()
{
    QTest::addColumn<Draw>("draw");

    QTest::newRow("polyline of 0 points") << Draw([](CDrawTools &t, QPainter *p) {
        CPoint pts[] = {CPoint(5, 5), CPoint(20, 20)};
        t.DrawPolyline(p, pts, 0, 0x0000FF);
    });
    QTest::newRow("polyline without points")
        << Draw([](CDrawTools &t, QPainter *p) { t.DrawPolyline(p, nullptr, 3, 0x0000FF); });
    QTest::newRow("polygon without points")
        << Draw([](CDrawTools &t, QPainter *p) { t.DrawPolygon(p, nullptr, 3, 0xFF, 0xFF00); });
    QTest::newRow("triangle direction 7") << Draw([](CDrawTools &t, QPainter *p) {
        t.DrawTriangle(p, CRect(10, 10, 25, 25), 7, 0x0000FF, 0x00FF00);
    });
    QTest::newRow("null painter") << Draw([](CDrawTools &t, QPainter *) {
        t.DrawPopBox(static_cast<QPainter *>(nullptr), 1, 1, 9, 9, 0xFF);
        t.DrawRectXor(static_cast<QPainter *>(nullptr), 1, 1, 9, 9);
    });
}

void tst_DrawTools::degenerateShapesDrawNothing()
{
    QFETCH(Draw, draw);
    const QImage image = render(draw);
    // A degenerate polygon may mark the origin itself, nothing else.
    QVERIFY(paintedBounds(image).united(QRect(0, 0, 2, 2)) == QRect(0, 0, 2, 2));
}

void tst_DrawTools::polygonFillsOddEven()
{
    // A five-pointed star drawn in one stroke: its centre is enclosed twice, so the odd-even
    // rule leaves it empty while the winding rule would fill it.
    const QImage image = render(
        [](CDrawTools &t, QPainter *p) {
            CPoint star[5];
            for (int i = 0; i < 5; ++i) {
                const double a = (-90 + i * 144) * M_PI / 180;
                star[i] = CPoint(qRound(30 + 26 * std::cos(a)), qRound(30 + 26 * std::sin(a)));
            }
            t.DrawPolygon(p, star, 5, 0x0000FF, 0x00FF00);
        },
        1, QSize(60, 60));
    QCOMPARE(at(image, 30, 30), Background);
    QCOMPARE(at(image, 30, 10), Green); // inside the top point
}

void tst_DrawTools::xorRectangleRestores()
{
    Canvas canvas;
    canvas.resize(40, 30);
    CDrawTools tools;
    tools.SetLineThick(2);
    int times = 0;
    canvas.extra = [&](QWidget *w) {
        for (int i = 0; i < times; ++i)
            tools.DrawRectXor(w, CRect(10, 5, 30, 25));
    };
    const QImage before = canvas.grab().toImage();
    times = 1;
    const QImage once = canvas.grab().toImage();
    times = 2;
    const QImage twice = canvas.grab().toImage();
    QCOMPARE(twice, before);
    QVERIFY(once != before);
    // The band crosses both halves of the picture and inverts each.
    QCOMPARE(at(once, 10, 15), at(before, 10, 15) ^ 0x00FFFFFFu);
    QCOMPARE(at(once, 30, 15), at(before, 30, 15) ^ 0x00FFFFFFu);
    QCOMPARE(at(once, 20, 15), at(before, 20, 15));
}

void tst_DrawTools::widgetFormsOnlyInPaintEvent()
{
    static QStringList messages;
    messages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { messages << text; });

    Canvas canvas;
    canvas.resize(20, 20);
    CDrawTools tools;
    CBrush brush;
    brush.CreateSolidBrush(0xFF);
    bool holdPainter = false;
    canvas.extra = [&](QWidget *w) {
        QPainter held;
        if (holdPainter)
            held.begin(w);
        tools.DrawRect(w, 0, 0, 20, 20, 0x00FF00, 0x00FF00);
    };
    const QImage drawn = canvas.grab().toImage();
    holdPainter = true;
    const QImage whileHeld = canvas.grab().toImage();
    canvas.extra = nullptr;
    const QImage plain = canvas.grab().toImage();

    // Outside a paint event: no painter, no warning, nothing drawn.
    tools.DrawRect(&canvas, 0, 0, 10, 10, 0xFF);
    tools.DrawPopBoxSmall(&canvas, CRect(0, 0, 10, 10), brush);
    tools.DrawLine(&canvas, 0, 0, 10, 10, 0xFF);
    tools.DrawRectXor(static_cast<QWidget *>(nullptr), 0, 0, 10, 10);
    qInstallMessageHandler(previous);

    QCOMPARE(at(drawn, 5, 5), Green);
    QCOMPARE(whileHeld, drawn); // the application's own painter does not get in the way
    QCOMPARE(canvas.grab().toImage(), plain);
    QCOMPARE(messages, QStringList());
}

QTEST_MAIN(tst_DrawTools)
#include "tst_drawtools.moc"
