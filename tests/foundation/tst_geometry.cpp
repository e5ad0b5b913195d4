// SPDX-License-Identifier: MIT
#include <CRect.h>

#include <QtTest>

#include <climits>
#include <cstring>

// A rectangle given as (left, top, right, bottom) in a QRect's coordinates, not its size.
const auto edges = [](int l, int t, int r, int b) { return QRect(QPoint(l, t), QPoint(r, b)); };
const auto edgesOf = [](const CRect &r) { return edges(r.left, r.top, r.right, r.bottom); };

class tst_Geometry : public QObject
{
    Q_OBJECT

private slots:
    // Right and bottom are inclusive; the centre is ((left + right - 1) / 2, ...), truncated.
    void rects_data()
    {
        QTest::addColumn<QRect>("made"); // the edges of the rectangle as made
        QTest::addColumn<QRect>("stored");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("centre");
        auto row = [](const char *name, const CRect &made, QRect stored, QSize size, QPoint c) {
            QTest::newRow(name) << edgesOf(made) << stored << size << c;
        };
        auto set = [&](const char *name, QRect e, QSize size, QPoint c) {
            CRect r(1, 1, 2, 2);
            r.SetRect(e.left(), e.top(), e.right(), e.bottom());
            row(name, r, e, size, c); // SetRect stores the edges as given
        };
        row("default is empty", CRect(), edges(0, 0, -1, -1), QSize(0, 0), QPoint(-1, -1));
        row("ctor, ordered", CRect(1, 2, 30, 40), edges(1, 2, 30, 40), QSize(30, 39),
            QPoint(15, 20));
        row("ctor normalises", CRect(10, 20, 0, 5), edges(0, 5, 10, 20), QSize(11, 16),
            QPoint(4, 12));
        row("ctor normalises x", CRect(9, 0, 0, 1), edges(0, 0, 9, 1), QSize(10, 2), QPoint(4, 0));
        set("SetRect keeps inverted", edges(10, 20, 0, 5), QSize(-9, -14), QPoint(4, 12));
        set("SetRect zero width", edges(5, 0, 4, 0), QSize(0, 1), QPoint(4, 0));
        // The -1 puts the centre left of the middle: (0, 0, 9, 9) has the same centre.
        set("odd width", edges(0, 0, 10, 10), QSize(11, 11), QPoint(4, 4));
        set("single pixel is left of itself", edges(3, 3, 3, 3), QSize(1, 1), QPoint(2, 2));
        set("negative truncates toward zero", edges(-10, -10, 0, 0), QSize(11, 11), QPoint(-5, -5));
        set("sum beyond 32 bits", edges(INT_MAX - 1, INT_MAX - 1, INT_MAX, INT_MAX), QSize(2, 2),
            QPoint(INT_MAX - 1, INT_MAX - 1));
    }
    void rects()
    {
        QFETCH(QRect, made);
        QFETCH(QRect, stored);
        QFETCH(QSize, size);
        QFETCH(QPoint, centre);
        QCOMPARE(made, stored);
        CRect r;
        r.SetRect(stored.left(), stored.top(), stored.right(), stored.bottom());
        QCOMPARE(QSize(r.Width(), r.Height()), size);
        QCOMPARE(QSize(r.Size().cx, r.Size().cy), size);
        QCOMPARE(r.CenterPoint().GetPoint(), centre);
        QCOMPARE(r.TopLeft().GetPoint(), stored.topLeft());
        QCOMPARE(r.TopRight().GetPoint(), stored.topRight());
        QCOMPARE(r.BottomLeft().GetPoint(), stored.bottomLeft());
        QCOMPARE(r.BottomRight().GetPoint(), stored.bottomRight());
    }

    void ptInRect_data()
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
    void ptInRect()
    {
        QFETCH(QRect, rect);
        QFETCH(QPoint, point);
        QFETCH(bool, inside);
        CRect r;
        r.SetRect(rect.left(), rect.top(), rect.right(), rect.bottom());
        QCOMPARE(r.PtInRect(CPoint(point)), inside);
    }

    // Each moves (10, 20, 30, 60).
    void moves()
    {
        auto moved = [](auto move) {
            CRect r(10, 20, 30, 60);
            move(r);
            return edgesOf(r);
        };
        QCOMPARE(moved([](CRect &r) { r.Move(5, -7); }), edges(15, 13, 35, 53));
        QCOMPARE(moved([](CRect &r) { r.OffsetRect(CPoint(-10, 1)); }), edges(0, 21, 20, 61));
        QCOMPARE(moved([](CRect &r) { r.MoveToXY(-5, -6); }), edges(-5, -6, 15, 34)); // keeps size
        QCOMPARE(moved([](CRect &r) { r.InflateRect(2, 3); }), edges(8, 17, 32, 63));
        // Deflating past empty inverts the rectangle.
        QCOMPARE(moved([](CRect &r) { r.DeflateRect(11, 3); }), edges(21, 23, 19, 57));
    }

    // Drawing code hands these values to Qt as QRect and QPoint arrays, and to RECT records.
    void matchesQt()
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
        QVERIFY(!(CPoint(3, 4) == QPoint(3, 5)) && !(CPoint(3, 4) == QPoint(2, 4)));
    }
};

QTEST_APPLESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
