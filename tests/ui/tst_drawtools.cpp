#include <CBrush.h>
#include <CDrawTools.h>

#include <QPainter>
#include <QWidget>
#include <QtTest>

#include <functional>

using Draw = std::function<void(CDrawTools &, QPainter *)>;
Q_DECLARE_METATYPE(Draw)
#define DRAW(...) Draw([](CDrawTools &t, QPainter *p) { __VA_ARGS__; })

namespace {

const QRgb Background = qRgb(0x10, 0x20, 0x30);
const QRgb Red = qRgb(0xFF, 0, 0); // COLORREF 0x0000FF: red is the low byte
const QRgb Green = qRgb(0, 0xFF, 0);
const QRgb Xored = Background ^ 0x00FFFFFFu;

QImage render(const Draw &draw, int lineThick = 1, QSize size = QSize(32, 32))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Background);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QColor(Qt::magenta)); // a stray pen every call replaces or covers
    CDrawTools tools;
    tools.SetLineThick(lineThick);
    draw(tools, &painter);
    return image;
}

QRgb at(const QImage &image, int x, int y)
{
    return image.pixel(x, y) | 0xFF000000u;
}

/// The picture one letter a pixel, a line a row, so that a failure shows where it went wrong.
QString letters(const QImage &image)
{
    // F is the face, COLORREF 0x336699; G grey 0x7F7F7F.
    const QVector<QRgb> colours {
        Background, Red,        Green, qRgb(0x99, 0x66, 0x33), qRgb(0x7F, 0x7F, 0x7F),
        0xFF000000, 0xFFFFFFFF, Xored};
    QString text;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            text += QLatin1Char(".rgFGKWX?"[(colours.indexOf(at(image, x, y)) + 9) % 9]);
        text += QLatin1Char('\n');
    }
    return text;
}

QRect paintedBounds(const QImage &image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (at(image, x, y) != Background)
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

int countRed(const QImage &image, QRect area)
{
    return letters(image.copy(area)).count(QLatin1Char('r'));
}

} // namespace

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
    void pictures_data()
    {
        QTest::addColumn<Draw>("draw");
        QTest::addColumn<QString>("picture"); // rows apart by spaces

        // r red, g green, F the face 0x336699, X inverted. Right and bottom are included: a
        // stroke one pixel short or long shows.
        QTest::newRow("outline") << DRAW(t.DrawRect(p, 1, 1, 5, 4, 0x0000FF))
                                 << "....... .rrrrr. .r...r. .r...r. .rrrrr. .......";
        QTest::newRow("filled") << DRAW(t.DrawRect(p, 1, 1, 5, 4, 0x0000FF, 0x00FF00, -1))
                                << "....... .rrrrr. .rgggr. .rgggr. .rrrrr. .......";
        // No outline; the fill grows to cover the outline's pixels.
        QTest::newRow("border equals fill") << DRAW(t.DrawRect(p, 1, 1, 5, 4, 0x336699, 0x336699))
                                            << "....... .FFFFF. .FFFFF. .FFFFF. .FFFFF. .......";
        QTest::newRow("hatch 0 fills solid") << DRAW(t.DrawRect(p, 1, 1, 5, 4, 0xFF, 0xFF00, 0))
                                             << "....... .rrrrr. .rgggr. .rgggr. .rrrrr. .......";
        QTest::newRow("hatch 5 leaves inside") << DRAW(t.DrawRect(p, 1, 1, 5, 4, 0xFF, 0xFF00, 5))
                                               << "....... .rrrrr. .r...r. .r...r. .rrrrr. .......";
        QTest::newRow("hatch 5, equal colours: nothing")
            << DRAW(t.DrawRect(p, 1, 1, 5, 4, 0xFF00, 0xFF00, 5))
            << "....... ....... ....... ....... ....... .......";
        QTest::newRow("xor on background") << DRAW(t.DrawRectXor(p, CRect(1, 1, 5, 4)))
                                           << "....... .XXXXX. .X...X. .X...X. .XXXXX. .......";
        QTest::newRow("line, both ends")
            << DRAW(t.DrawLine(p, 1, 1, 5, 1, 0x0000FF)) << "....... .rrrrr. .......";
        QTest::newRow("polyline") << DRAW(CPoint pts[] = {{1, 1}, {5, 1}, {5, 3}};
                                          t.DrawPolyline(p, pts, 3, 0x0000FF))
                                  << "....... .rrrrr. .....r. .....r. .......";

        // The boxes on 1, 1, 12, 10 with a thick line setting, which must not widen the bevels.
        // K black, W white, G grey 0x7F7F7F. The
        // small boxes paint their face with the painter's own pen, which the frame must cover.
        QTest::newRow("raised") << DRAW(t.SetLineThick(3); t.DrawPopBox(p, 1, 1, 12, 10, 0x336699))
                                << ".............. .KKKKKKKKKKKK. .KWWWWWWWWWGK. .KWWWWWWWWGGK. "
                                   ".KWWFFFFFFGGK. .KWWFFFFFFGGK. .KWWFFFFFFGGK. .KWWFFFFFFGGK. "
                                   ".KWGGGGGGGGGK. .KGGGGGGGGGGK. .KKKKKKKKKKKK. ..............";
        // The frame shifted to the lower right covers the outer white bevel there.
        QTest::newRow("sunken") << DRAW(t.SetLineThick(3);
                                        t.DrawPushBox(p, CRect(1, 1, 12, 10), 0x336699))
                                << ".............. .GGGGGGGGGGGW. .GGGGGGGGGGWW. .GGKKKKKKKKKK. "
                                   ".GGKFFFFFFFWK. .GGKFFFFFFFWK. .GGKFFFFFFFWK. .GGKFFFFFFFWK. "
                                   ".GGKFFFFFFFWK. .GWKWWWWWWWWK. .WWKKKKKKKKKK. ..............";
        QTest::newRow("small raised")
            << DRAW(CBrush brush; brush.CreateSolidBrush(0x336699); t.SetLineThick(3);
                    t.DrawPopBoxSmall(p, 1, 1, 12, 10, brush))
            << ".............. .KKKKKKKKKKKK. .KWWWWWWWWWGK. .KWFFFFFFFFGK. .KWFFFFFFFFGK. "
               ".KWFFFFFFFFGK. .KWFFFFFFFFGK. .KWFFFFFFFFGK. .KWFFFFFFFFGK. .KGGGGGGGGGGK. "
               ".KKKKKKKKKKKK. ..............";
        QTest::newRow("small sunken")
            << DRAW(t.SetLineThick(3); t.DrawPushBoxSmall(p, CRect(1, 1, 12, 10), 0x336699L))
            << ".............. .KKKKKKKKKKKK. .KGGGGGGGGGWK. .KGFFFFFFFFWK. .KGFFFFFFFFWK. "
               ".KGFFFFFFFFWK. .KGFFFFFFFFWK. .KGFFFFFFFFWK. .KGFFFFFFFFWK. .KWWWWWWWWWWK. "
               ".KKKKKKKKKKKK. ..............";
    }

    void pictures()
    {
        QFETCH(Draw, draw);
        QFETCH(QString, picture);
        const QSize size(picture.indexOf(QLatin1Char(' ')), picture.count(QLatin1Char(' ')) + 1);
        QCOMPARE(letters(render(draw, 1, size)),
                 picture.replace(QLatin1Char(' '), QLatin1Char('\n')) + '\n');
    }

    void shapeBounds_data()
    {
        QTest::addColumn<Draw>("draw");
        QTest::addColumn<QRgb>("centre");

        QTest::newRow("ellipse") << DRAW(t.DrawEllipse(p, 3, 4, 25, 20, 0x0000FF)) << Background;
        QTest::newRow("filled ellipse")
            << DRAW(t.DrawEllipse(p, CRect(3, 4, 25, 20), 0xFF, 0xFF00)) << Green;
        QTest::newRow("round rect") << DRAW(t.DrawRoundRect(p, 3, 4, 25, 20, 0xFF)) << Background;
        // A star in one stroke encloses its centre twice: odd-even leaves it empty, winding
        // would fill it.
        QTest::newRow("star")
            << DRAW(CPoint star[] = {{14, 4}, {22, 20}, {3, 10}, {25, 10}, {6, 20}};
                    t.DrawPolygon(p, star, 5, 0xFF, 0xFF00))
            << Background;
    }

    void shapeBounds()
    {
        QFETCH(Draw, draw);
        QFETCH(QRgb, centre);
        const QImage image = render(draw);
        QCOMPARE(paintedBounds(image), QRect(QPoint(3, 4), QPoint(25, 20)));
        QCOMPARE(at(image, 14, 12), centre);
        // An ellipse's outline does not reach the corners of its rectangle.
        if (QByteArray(QTest::currentDataTag()).contains("ellipse"))
            QCOMPARE(at(image, 3, 4), Background);
    }

    void lineWidths_data()
    {
        QTest::addColumn<Draw>("draw");
        QTest::addColumn<int>("rows"); // painted rows crossing column 2, where every style paints

        QTest::newRow("line") << DRAW(t.DrawLine(p, 2, 10, 20, 10, 0xFF)) << 3;
        QTest::newRow("dashed line") << DRAW(t.DrawLine(p, 2, 10, 20, 10, 0xFF, 2)) << 3;
        QTest::newRow("polyline") << DRAW(CPoint pts[] = {{2, 10}, {20, 10}};
                                          t.DrawPolyline(p, pts, 2, 0xFF, 1))
                                  << 3;
        QTest::newRow("dotted polyline stays thin")
            << DRAW(CPoint pts[] = {{2, 10}, {20, 10}}; t.DrawPolyline(p, pts, 2, 0xFF, 3)) << 1;
    }

    void lineWidths()
    {
        QFETCH(Draw, draw);
        QFETCH(int, rows);
        QCOMPARE(countRed(render(draw, 3), QRect(2, 0, 1, 32)), rows);
    }

    void triangleApex_data()
    {
        QTest::addColumn<int>("direction");
        QTest::addColumn<QPoint>("apex");
        QTest::addColumn<QPoint>("base"); // the base's end at the left or top

        // Rectangle 4, 6, 24, 20: CenterPoint (13, 12), the apex one past it.
        QTest::newRow("0 up") << 0 << QPoint(14, 6) << QPoint(4, 20);
        QTest::newRow("1 down") << 1 << QPoint(14, 20) << QPoint(4, 6);
        QTest::newRow("2 left") << 2 << QPoint(4, 13) << QPoint(24, 6);
        QTest::newRow("3 right") << 3 << QPoint(24, 13) << QPoint(4, 6);
    }

    void triangleApex()
    {
        QFETCH(int, direction);
        QFETCH(QPoint, apex);
        QFETCH(QPoint, base);
        for (bool fromRect : {true, false}) {
            const QImage image = render([&](CDrawTools &t, QPainter *p) {
                fromRect ? t.DrawTriangle(p, CRect(4, 6, 24, 20), direction, 0xFF, 0xFF00)
                         : t.DrawTriangle(p, 4, 6, 24, 20, direction, 0xFF, 0xFF00);
            });
            QVERIFY(QRect(QPoint(4, 6), QPoint(24, 20)).contains(paintedBounds(image)));
            QCOMPARE(at(image, apex.x(), apex.y()), Red);
            QCOMPARE(at(image, base.x(), base.y()), Red);
            QCOMPARE(at(image, 14, 13), Green);
        }
    }

    void degenerateShapesDrawNothing()
    {
        const QImage image = render([](CDrawTools &t, QPainter *p) {
            CPoint pts[] = {CPoint(5, 5), CPoint(20, 20)};
            t.DrawPolyline(p, pts, 0, 0x0000FF);
            t.DrawPolyline(p, nullptr, 3, 0x0000FF);
            t.DrawPolygon(p, nullptr, 3, 0xFF, 0xFF00);
            t.DrawTriangle(p, CRect(10, 10, 25, 25), 7, 0x0000FF, 0x00FF00);
            t.DrawPopBox(static_cast<QPainter *>(nullptr), 1, 1, 9, 9, 0xFF); // no crash
            t.DrawRectXor(static_cast<QPainter *>(nullptr), 1, 1, 9, 9);
        });
        // A degenerate polygon may mark the origin itself, nothing else.
        QCOMPARE(paintedBounds(image).united(QRect(0, 0, 2, 2)), QRect(0, 0, 2, 2));
    }

    void widgetForms()
    {
        static QStringList messages;
        const QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { messages << text; });
        Canvas canvas;
        canvas.resize(40, 30);
        CDrawTools tools;
        tools.SetLineThick(2);
        int xors = 0;
        bool holdPainter = false;
        canvas.extra = [&](QWidget *w) {
            QPainter held; // the application's own painter must not get in the way
            if (holdPainter)
                held.begin(w);
            for (int i = 0; i < xors; ++i)
                tools.DrawRectXor(w, CRect(10, 5, 30, 25));
        };
        const QImage before = canvas.grab().toImage();
        xors = 1;
        const QImage once = canvas.grab().toImage();
        // The band crosses both halves of the picture and inverts each; twice restores it.
        QCOMPARE(at(once, 10, 15), at(before, 10, 15) ^ 0x00FFFFFFu);
        QCOMPARE(at(once, 30, 15), at(before, 30, 15) ^ 0x00FFFFFFu);
        QCOMPARE(at(once, 20, 15), at(before, 20, 15));
        holdPainter = true;
        QCOMPARE(canvas.grab().toImage(), once);
        xors = 2;
        QCOMPARE(canvas.grab().toImage(), before);

        // Outside a paint event: no painter, no warning, nothing drawn.
        canvas.extra = nullptr;
        CBrush brush;
        brush.CreateSolidBrush(0xFF);
        tools.DrawRect(&canvas, 0, 0, 10, 10, 0xFF, 0xFF);
        tools.DrawPopBoxSmall(&canvas, CRect(0, 0, 10, 10), brush);
        tools.DrawLine(&canvas, 0, 0, 10, 10, 0xFF);
        tools.DrawRectXor(static_cast<QWidget *>(nullptr), 0, 0, 10, 10);
        qInstallMessageHandler(previous);
        QCOMPARE(canvas.grab().toImage(), before);
        QCOMPARE(messages, QStringList());
    }
};

QTEST_MAIN(tst_DrawTools)
#include "tst_drawtools.moc"
