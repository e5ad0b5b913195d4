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
    void construction_data();
    void construction();
    void emptyRect();
    void corners();
    void centerPoint_data();
    void centerPoint();
    void ptInRect_data();
    void ptInRect();
    void moves_data();
    void moves();
    void layoutMatchesQt();
    void points();
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

void tst_Geometry::construction_data()
{
    QTest::addColumn<QRect>("given");
    QTest::addColumn<bool>("viaSetRect");
    QTest::addColumn<QRect>("stored");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("ctor keeps ordered edges")
        << edges(1, 2, 3, 4) << false << edges(1, 2, 3, 4) << 3 << 3;
    QTest::newRow("ctor normalises both")
        << edges(10, 20, 0, 5) << false << edges(0, 5, 10, 20) << 11 << 16;
    QTest::newRow("ctor normalises x only")
        << edges(9, 0, 0, 1) << false << edges(0, 0, 9, 1) << 10 << 2;
    QTest::newRow("ctor single pixel") << edges(5, 5, 5, 5) << false << edges(5, 5, 5, 5) << 1 << 1;
    QTest::newRow("SetRect keeps inverted")
        << edges(10, 20, 0, 5) << true << edges(10, 20, 0, 5) << -9 << -14;
    QTest::newRow("SetRect zero width") << edges(5, 0, 4, 0) << true << edges(5, 0, 4, 0) << 0 << 1;
}

void tst_Geometry::construction()
{
    QFETCH(QRect, given);
    QFETCH(bool, viaSetRect);
    QFETCH(QRect, stored);
    QFETCH(int, width);
    QFETCH(int, height);
    CRect r(1, 1, 2, 2);
    if (viaSetRect)
        r.SetRect(given.left(), given.top(), given.right(), given.bottom());
    else
        r = CRect(given.left(), given.top(), given.right(), given.bottom());
    QCOMPARE(edgesOf(r), stored);
    QCOMPARE(r.Width(), width);
    QCOMPARE(r.Height(), height);
    QCOMPARE(r.Size().cx, width);
    QCOMPARE(r.Size().cy, height);
}

void tst_Geometry::emptyRect()
{
    const CRect r;
    QCOMPARE(edgesOf(r), edges(0, 0, -1, -1));
    QCOMPARE(r.Width(), 0);
    QCOMPARE(r.Height(), 0);
    QVERIFY(!r.PtInRect(CPoint(0, 0)));
    QVERIFY(!r.PtInRect(CPoint(-1, -1)));
    QCOMPARE(r.CenterPoint().GetPoint(), QPoint(-1, -1));
}

void tst_Geometry::corners()
{
    const CRect r(1, 2, 30, 40);
    QCOMPARE(r.TopLeft().GetPoint(), QPoint(1, 2));
    QCOMPARE(r.TopRight().GetPoint(), QPoint(30, 2));
    QCOMPARE(r.BottomLeft().GetPoint(), QPoint(1, 40));
    QCOMPARE(r.BottomRight().GetPoint(), QPoint(30, 40));
    QVERIFY(r.PtInRect(r.BottomRight()));
}

void tst_Geometry::centerPoint_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QPoint>("centre");
    QTest::newRow("even width") << edges(0, 0, 9, 9) << QPoint(4, 4);
    QTest::newRow("odd width, same centre") << edges(0, 0, 10, 10) << QPoint(4, 4);
    QTest::newRow("single pixel is left of itself") << edges(3, 3, 3, 3) << QPoint(2, 2);
    QTest::newRow("negative truncates toward zero") << edges(-10, -10, 0, 0) << QPoint(-5, -5);
    QTest::newRow("sum beyond 32 bits")
        << edges(INT_MAX - 1, INT_MAX - 1, INT_MAX, INT_MAX) << QPoint(INT_MAX - 1, INT_MAX - 1);
}

void tst_Geometry::centerPoint()
{
    QFETCH(QRect, rect);
    QFETCH(QPoint, centre);
    CRect r;
    r.SetRect(rect.left(), rect.top(), rect.right(), rect.bottom());
    QCOMPARE(r.CenterPoint().GetPoint(), centre);
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
    QTest::newRow("left of left edge") << r << QPoint(-1, 5) << false;
    QTest::newRow("above top edge") << r << QPoint(5, -1) << false;
    QTest::newRow("inverted is swapped") << edges(10, 20, 0, 5) << QPoint(5, 10) << true;
    QTest::newRow("inverted, outside") << edges(10, 20, 0, 5) << QPoint(11, 10) << false;
    QTest::newRow("zero width is not swapped") << edges(5, 0, 4, 9) << QPoint(4, 0) << false;
    QTest::newRow("zero width, left edge") << edges(5, 0, 4, 9) << QPoint(5, 0) << false;
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
    QTest::addColumn<QString>("op");
    QTest::addColumn<int>("dx");
    QTest::addColumn<int>("dy");
    QTest::addColumn<QRect>("result");
    // Every row starts from (10, 20, 30, 60).
    QTest::newRow("Move") << "Move" << 5 << -7 << edges(15, 13, 35, 53);
    QTest::newRow("OffsetRect") << "OffsetRect" << -10 << 1 << edges(0, 21, 20, 61);
    QTest::newRow("MoveToXY keeps size") << "MoveToXY" << 0 << 0 << edges(0, 0, 20, 40);
    QTest::newRow("MoveToXY negative") << "MoveToXY" << -5 << -6 << edges(-5, -6, 15, 34);
    QTest::newRow("InflateRect") << "InflateRect" << 2 << 3 << edges(8, 17, 32, 63);
    QTest::newRow("DeflateRect") << "DeflateRect" << 2 << 3 << edges(12, 23, 28, 57);
    QTest::newRow("DeflateRect past empty") << "DeflateRect" << 11 << 0 << edges(21, 20, 19, 60);
}

void tst_Geometry::moves()
{
    QFETCH(QString, op);
    QFETCH(int, dx);
    QFETCH(int, dy);
    QFETCH(QRect, result);
    CRect r(10, 20, 30, 60);
    if (op == QLatin1String("Move"))
        r.Move(dx, dy);
    else if (op == QLatin1String("OffsetRect"))
        r.OffsetRect(CPoint(dx, dy));
    else if (op == QLatin1String("MoveToXY"))
        r.MoveToXY(dx, dy);
    else if (op == QLatin1String("InflateRect"))
        r.InflateRect(dx, dy);
    else
        r.DeflateRect(dx, dy);
    QCOMPARE(edgesOf(r), result);
}

void tst_Geometry::layoutMatchesQt()
{
    // Drawing code hands these values to Qt as QRect and QPoint arrays.
    const CRect r(1, 2, 3, 4);
    QRect q;
    std::memcpy(static_cast<void *>(&q), &r, sizeof q);
    QCOMPARE(q, edges(1, 2, 3, 4));
    QCOMPARE(q.width(), r.Width());

    const CPoint pts[2] = {CPoint(5, 6), CPoint(7, 8)};
    QPoint qp[2];
    std::memcpy(static_cast<void *>(qp), pts, sizeof qp);
    QCOMPARE(qp[1], QPoint(7, 8));

    RECT rec = {};
    r.GetRect(&rec);
    QCOMPARE(edges(rec.left, rec.top, rec.right, rec.bottom), edges(1, 2, 3, 4));
    r.GetRect(nullptr);
}

void tst_Geometry::points()
{
    QPoint q(3, -4);
    const CPoint p(q);
    QVERIFY(p == q);
    QVERIFY(p == CPoint(3, -4));
    QVERIFY(!(p == CPoint(-4, 3)));
    QVERIFY(CPoint() == QPoint(0, 0));
    QCOMPARE(CSize().cx + CSize().cy, 0);
}

QTEST_APPLESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
