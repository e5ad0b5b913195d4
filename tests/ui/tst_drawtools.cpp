// SPDX-License-Identifier: MIT
#include <CBrush.h>
#include <CDrawTools.h>

#include <QPainter>
#include <QWidget>
#include <QtTest>

#include <functional>

using Draw = std::function<void(CDrawTools &, QPainter *)>;
Q_DECLARE_METATYPE(Draw)
#define DRAW(...) Draw([](CDrawTools &t, QPainter *p) { __VA_ARGS__; })
#define THICK(...) DRAW(t.SetLineThick(3); __VA_ARGS__)

namespace {

const QRgb Background = qRgb(0x10, 0x20, 0x30);
CPoint across[] = {{2, 10}, {20, 10}};

QImage render(const Draw &draw, QSize size = QSize(32, 32))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Background);
    QPainter painter(&image);
    painter.setPen(QColor(Qt::magenta)); // a stray pen every call replaces or covers
    CDrawTools tools;
    draw(tools, &painter);
    return image;
}

/// The picture one letter a pixel, a line a row, so that a failure shows where it went wrong.
QString letters(const QImage &image)
{
    // . the background, r COLORREF 0x0000FF (red is the low byte), g 0x00FF00, F the face
    // 0x336699, G grey 0x7F7F7F, K black, W white, X the background inverted.
    const QVector<QRgb> colours {0xFF102030, 0xFFFF0000, 0xFF00FF00, 0xFF996633,
                                 0xFF7F7F7F, 0xFF000000, 0xFFFFFFFF, 0xFFEFDFCF};
    QString text;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            text += QLatin1Char(".rgFGKWX?"[(colours.indexOf(image.pixel(x, y)) + 9) % 9]);
        text += QLatin1Char('\n');
    }
    return text;
}

/// All that is painted but the origin, which a degenerate polygon may mark.
QRect paintedBounds(const QImage &image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != Background && x + y > 0)
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

} // namespace

/// A widget that paints a fixed picture, then XOR rectangles on it from its paint event.
class Canvas : public QWidget
{
public:
    CDrawTools tools;
    int xors = 0;
    bool holdPainter = false; // the application's own painter must not get in the way

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(0, 0, width() / 2, height(), QColor(0x40, 0x80, 0xC0));
        QPainter held;
        if (holdPainter)
            held.begin(this);
        for (int i = 0; i < xors; ++i)
            tools.DrawRectXor(this, CRect(10, 5, 30, 25));
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
        QTest::newRow("xor on background") << DRAW(t.DrawRectXor(p, CRect(1, 1, 5, 4)))
                                           << "....... .XXXXX. .X...X. .X...X. .XXXXX. .......";
        QTest::newRow("line, both ends")
            << DRAW(t.DrawLine(p, 1, 1, 5, 1, 0x0000FF)) << "....... .rrrrr. .......";
        QTest::newRow("polyline") << DRAW(CPoint pts[] = {{1, 1}, {5, 1}, {5, 3}};
                                          t.DrawPolyline(p, pts, 3, 0x0000FF))
                                  << "....... .rrrrr. .....r. .....r. .......";

        // The boxes on 0, 0, 7, 6 with a thick line setting, which must not widen the bevels.
        // K black, W white, G grey 0x7F7F7F. The small boxes paint their face with the painter's
        // own pen, which the frame must cover.
        QTest::newRow("raised")
            << THICK(t.DrawPopBox(p, 0, 0, 7, 6, 0x336699))
            << "KKKKKKKK. KWWWWWGK. KWWWWGGK. KWWFFGGK. KWGGGGGK. KGGGGGGK. KKKKKKKK. .........";
        // The frame shifted to the lower right covers the outer white bevel there.
        QTest::newRow("sunken")
            << THICK(t.DrawPushBox(p, CRect(0, 0, 7, 6), 0x336699))
            << "GGGGGGGW. GGGGGGWW. GGKKKKKK. GGKFFFWK. GGKFFFWK. GWKWWWWK. WWKKKKKK. .........";
        QTest::newRow("small raised")
            << THICK(CBrush brush; brush.CreateSolidBrush(0x336699);
                     t.DrawPopBoxSmall(p, 0, 0, 7, 6, brush))
            << "KKKKKKKK. KWWWWWGK. KWFFFFGK. KWFFFFGK. KWFFFFGK. KGGGGGGK. KKKKKKKK. .........";
        QTest::newRow("small sunken")
            << THICK(t.DrawPushBoxSmall(p, CRect(0, 0, 7, 6), 0x336699L))
            << "KKKKKKKK. KGGGGGWK. KGFFFFWK. KGFFFFWK. KGFFFFWK. KWWWWWWK. KKKKKKKK. .........";
    }

    void pictures()
    {
        QFETCH(Draw, draw);
        QFETCH(QString, picture);
        const QSize size(picture.indexOf(QLatin1Char(' ')), picture.count(QLatin1Char(' ')) + 1);
        QCOMPARE(letters(render(draw, size)),
                 picture.replace(QLatin1Char(' '), QLatin1Char('\n')) + '\n');
    }

    void shapes_data()
    {
        QTest::addColumn<Draw>("draw");
        QTest::addColumn<QRect>("bounds");  // all that is painted lies inside
        QTest::addColumn<QString>("spots"); // "x,y" and the letter seen there, as in pictures

        const QRect box(QPoint(3, 4), QPoint(25, 20)), tri(QPoint(4, 6), QPoint(24, 20));
        const QString edges = QStringLiteral("3,12r 25,12r 14,4r 14,20r "); // each side reached
        // An ellipse's outline does not reach the corners of its rectangle.
        QTest::newRow("filled ellipse") << DRAW(t.DrawEllipse(p, CRect(3, 4, 25, 20), 0xFF, 0xFF00))
                                        << box << edges + "14,12g 3,4.";
        // A star in one stroke encloses its centre twice: odd-even leaves it empty, winding
        // would fill it.
        QTest::newRow("star")
            << DRAW(CPoint star[] = {{14, 4}, {22, 20}, {3, 10}, {25, 10}, {6, 20}};
                    t.DrawPolygon(p, star, 5, 0xFF, 0xFF00))
            << box << "14,4r 3,10r 25,10r 6,20r 14,12.";

        // Rectangle 4, 6, 24, 20: CenterPoint (13, 12), the apex one past it; then the base's
        // end at the left or top, and the inside. Each direction in both forms.
        const char *apexBase[] = {"14,6r 4,20r", "14,20r 4,6r", "4,13r 24,6r", "24,13r 4,6r"};
        for (int i = 0; i < 8; ++i) {
            QTest::addRow("triangle %d%s", i / 2, i % 2 ? "" : ", CRect")
                << Draw([i](CDrawTools &t, QPainter *p) {
                       i % 2 ? t.DrawTriangle(p, 4, 6, 24, 20, i / 2, 0xFF, 0xFF00)
                             : t.DrawTriangle(p, CRect(4, 6, 24, 20), i / 2, 0xFF, 0xFF00);
                   })
                << tri << apexBase[i / 2] + QStringLiteral(" 14,13g");
        }
        QTest::newRow("nothing to draw")
            << DRAW(t.DrawTriangle(p, CRect(10, 10, 25, 25), 7, 0xFF, 0xFF00);
                    t.DrawPolyline(p, across, 0, 0xFF); t.DrawPolyline(p, nullptr, 3, 0xFF);
                    t.DrawPolygon(p, nullptr, 3, 0xFF, 0xFF00);
                    t.DrawPopBox(static_cast<QPainter *>(nullptr), 1, 1, 9, 9, 0xFF); // no crash
                    t.DrawRectXor(static_cast<QPainter *>(nullptr), 1, 1, 9, 9))
            << QRect() << "";

        // The line thickness widens solid and dashed lines; dotted ones stay thin.
        const QRect band(0, 9, 32, 3);
        const QString thick = QStringLiteral("2,9r 2,10r 2,11r");
        QTest::newRow("line") << THICK(t.DrawLine(p, 2, 10, 20, 10, 0xFF)) << band << thick;
        QTest::newRow("polyline") << THICK(t.DrawPolyline(p, across, 2, 0xFF, 1)) << band << thick;
        QTest::newRow("dotted polyline")
            << THICK(t.DrawPolyline(p, across, 2, 0xFF, 3)) << QRect(0, 10, 32, 1) << "2,10r";
        // With the border in the fill colour the outline stays one pixel, however thick lines are.
        QTest::newRow("polygon, border as fill")
            << THICK(CPoint sq[] = {{5, 5}, {20, 5}, {20, 20}, {5, 20}};
                     t.DrawPolygon(p, sq, 4, 0xFF00, 0xFF00))
            << QRect(QPoint(5, 5), QPoint(20, 20)) << "12,12g";
    }

    void shapes()
    {
        QFETCH(Draw, draw);
        QFETCH(QRect, bounds);
        QFETCH(QString, spots);
        const QImage image = render(draw);
        QCOMPARE(paintedBounds(image) | bounds, bounds);
        QString seen;
        for (const QString &spot : spots.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const QStringList xy = spot.chopped(1).split(QLatin1Char(','));
            seen +=
                spot.chopped(1) + letters(image.copy(xy[0].toInt(), xy[1].toInt(), 1, 1))[0] + ' ';
        }
        QCOMPARE(seen, spots.isEmpty() ? spots : spots + ' ');
    }

    // The roundness is a fifth of each side taken as Qt's percentage, so a long flat box has
    // nearly square corners: its corner pixel is part of the outline.
    void roundRectCorner()
    {
        const QImage image =
            render(DRAW(t.DrawRoundRect(p, 1, 1, 101, 21, 0xFF, 0xFF00)), QSize(110, 26));
        QCOMPARE(letters(image.copy(0, 0, 3, 3)), QStringLiteral("...\n.rr\n.rg\n"));
    }

    void widgetForms()
    {
        Canvas canvas;
        canvas.resize(40, 30);
        canvas.tools.SetLineThick(2);
        const auto grab = [&](int xors, bool hold) {
            canvas.xors = xors;
            canvas.holdPainter = hold;
            return canvas.grab().toImage();
        };
        const QImage before = grab(0, false), once = grab(1, false);
        // The band crosses both halves of the picture and inverts each; twice restores it.
        for (int x : {10, 30})
            QCOMPARE(once.pixel(x, 15), before.pixel(x, 15) ^ 0x00FFFFFFu);
        QCOMPARE(once.pixel(20, 15), before.pixel(20, 15));
        QCOMPARE(grab(1, true), once);
        QCOMPARE(grab(2, true), before);
        canvas.tools.DrawRectXor(static_cast<QWidget *>(nullptr), 0, 0, 10, 10); // no crash
    }
};

QTEST_MAIN(tst_DrawTools)
#include "tst_drawtools.moc"
