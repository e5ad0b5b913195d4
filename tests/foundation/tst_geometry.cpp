#include <CPoint.h>
#include <CRect.h>
#include <CSize.h>

#include <QtTest>

#include <climits>
#include <cstring>

class tst_Geometry : public QObject
{
    Q_OBJECT

private slots:
    void rects_data();
    void rects();
    void ptInRect_data();
    void ptInRect();
    void moves_data();
    void moves();
    void matchesQt();
};

// A rectangle given as (left, top, right, bottom) in a QRect's coordinates, not its size.
static QRect edges(int l, int t, int r, int b)
{
    return QRect(QPoint(l, t), QPoint(r, b));
}

static QRect edgesOf(const CRect &r)
{
    return edges(r.left, r.top, r.right, r.bottom);
}

enum Made { Constructed, BySetRect, Default };

// Right and bottom are inclusive; the centre is ((left + right - 1) / 2, ...), truncated.
void tst_Geometry::rects_data()
{
    QTest::addColumn<int>("made");
    QTest::addColumn<QRect>("given");
    QTest::addColumn<QRect>("stored");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("centre");
    auto row = [](const char *name, Made made, QRect given, QRect stored, QSize size, QPoint c) {
        QTest::newRow(name) << int(made) << given << stored << size << c;
    };
    auto set = [&](const char *name, QRect rect, QSize size, QPoint c) {
        row(name, BySetRect, rect, rect, size, c); // SetRect stores the edges as given
    };
    row("default is empty", Default, QRect(), edges(0, 0, -1, -1), QSize(0, 0), QPoint(-1, -1));
    row("ctor keeps ordered edges", Constructed, edges(1, 2, 30, 40), edges(1, 2, 30, 40),
        QSize(30, 39), QPoint(15, 20));
    row("ctor normalises both", Constructed, edges(10, 20, 0, 5), edges(0, 5, 10, 20),
        QSize(11, 16), QPoint(4, 12));
    row("ctor normalises x only", Constructed, edges(9, 0, 0, 1), edges(0, 0, 9, 1), QSize(10, 2),
        QPoint(4, 0));
    set("SetRect keeps inverted", edges(10, 20, 0, 5), QSize(-9, -14), QPoint(4, 12));
    set("SetRect zero width", edges(5, 0, 4, 0), QSize(0, 1), QPoint(4, 0));
    set("even width", edges(0, 0, 9, 9), QSize(10, 10), QPoint(4, 4));
    set("odd width, same centre", edges(0, 0, 10, 10), QSize(11, 11), QPoint(4, 4));
    set("single pixel is left of itself", edges(3, 3, 3, 3), QSize(1, 1), QPoint(2, 2));
    set("negative truncates toward zero", edges(-10, -10, 0, 0), QSize(11, 11), QPoint(-5, -5));
    set("sum beyond 32 bits", edges(INT_MAX - 1, INT_MAX - 1, INT_MAX, INT_MAX), QSize(2, 2),
        QPoint(INT_MAX - 1, INT_MAX - 1));
}

void tst_Geometry::rects()
{
    QFETCH(int, made);
    QFETCH(QRect, given);
    QFETCH(QRect, stored);
    QFETCH(QSize, size);
    QFETCH(QPoint, centre);
    CRect r(1, 1, 2, 2);
    if (made == BySetRect)
        r.SetRect(given.left(), given.top(), given.right(), given.bottom());
    else
        r = made == Default ? CRect()
                            : CRect(given.left(), given.top(), given.right(), given.bottom());
    QCOMPARE(edgesOf(r), stored);
    QCOMPARE(QSize(r.Width(), r.Height()), size);
    QCOMPARE(QSize(r.Size().cx, r.Size().cy), size);
    QCOMPARE(r.CenterPoint().GetPoint(), centre);
    QCOMPARE(r.TopLeft().GetPoint(), stored.topLeft());
    QCOMPARE(r.TopRight().GetPoint(), stored.topRight());
    QCOMPARE(r.BottomLeft().GetPoint(), stored.bottomLeft());
    QCOMPARE(r.BottomRight().GetPoint(), stored.bottomRight());
}

void tst_Geometry::ptInRect_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<bool>("inside");
    const QRect r = edges(0, 0, 9, 9);
    QTest::newRow("top-left corner") << r << QPoint(0, 0) << true;
    QTest::newRow("bottom-right corner") << r << QPoint(9, 9) << true;
    QTest::newRow("right of right edge") << r << QPoint(10, 9) << false;
    QTest::newRow("below bottom edge") << r << QPoint(9, 10) << false;
    QTest::newRow("inverted is swapped") << edges(10, 20, 0, 5) << QPoint(5, 10) << true;
    QTest::newRow("inverted, outside") << edges(10, 20, 0, 5) << QPoint(11, 10) << false;
    QTest::newRow("zero width is not swapped") << edges(5, 0, 4, 9) << QPoint(5, 0) << false;
    QTest::newRow("empty, origin") << edges(0, 0, -1, -1) << QPoint(0, 0) << false;
    QTest::newRow("at INT_MIN edge") << edges(INT_MIN, 0, 0, 0) << QPoint(INT_MIN, 0) << true;
}

void tst_Geometry::ptInRect()
{
    QFETCH(QRect, rect);
    QFETCH(QPoint, point);
    QFETCH(bool, inside);
    CRect r;
    r.SetRect(rect.left(), rect.top(), rect.right(), rect.bottom());
    QCOMPARE(r.PtInRect(CPoint(point)), inside);
}

void tst_Geometry::moves_data()
{
    QTest::addColumn<QRect>("result");
    QTest::addColumn<QRect>("expected");
    // Every row moves (10, 20, 30, 60).
    auto moved = [](auto move) {
        CRect r(10, 20, 30, 60);
        move(r);
        return edgesOf(r);
    };
    QTest::newRow("Move") << moved([](CRect &r) { r.Move(5, -7); }) << edges(15, 13, 35, 53);
    QTest::newRow("OffsetRect") << moved([](CRect &r) { r.OffsetRect(CPoint(-10, 1)); })
                                << edges(0, 21, 20, 61);
    QTest::newRow("MoveToXY keeps size")
        << moved([](CRect &r) { r.MoveToXY(-5, -6); }) << edges(-5, -6, 15, 34);
    QTest::newRow("InflateRect") << moved([](CRect &r) { r.InflateRect(2, 3); })
                                 << edges(8, 17, 32, 63);
    QTest::newRow("DeflateRect past empty")
        << moved([](CRect &r) { r.DeflateRect(11, 3); }) << edges(21, 23, 19, 57);
}

void tst_Geometry::moves()
{
    QFETCH(QRect, result);
    QFETCH(QRect, expected);
    QCOMPARE(result, expected);
}

// Drawing code hands these values to Qt as QRect and QPoint arrays, and to RECT records.
void tst_Geometry::matchesQt()
{
    const CRect r(1, 2, 3, 4);
    QRect q;
    std::memcpy(static_cast<void *>(&q), &r, sizeof q);
    QCOMPARE(q, edges(1, 2, 3, 4));
    const CPoint pts[2] = {CPoint(5, 6), CPoint(7, 8)};
    QPoint qp[2];
    std::memcpy(static_cast<void *>(qp), pts, sizeof qp);
    QCOMPARE(qp[1], QPoint(7, 8));
    RECT rec = {};
    r.GetRect(&rec);
    QCOMPARE(edges(rec.left, rec.top, rec.right, rec.bottom), edges(1, 2, 3, 4));
    r.GetRect(nullptr);

    QPoint p(3, -4);
    QVERIFY(CPoint(p) == p && CPoint(p) == CPoint(3, -4) && !(CPoint(p) == CPoint(-4, 3)));
    QVERIFY(CPoint() == QPoint(0, 0));
    QCOMPARE(CSize().cx + CSize().cy, 0);
}

QTEST_APPLESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
