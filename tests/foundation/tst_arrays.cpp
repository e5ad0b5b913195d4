// SPDX-License-Identifier: MIT
#include <Vantor.h>

#include <QtTest>

#include <climits>

// Distinct objects; the arrays only hold their addresses.
static QObject objects[100];

// "left top right bottom" of every rectangle, joined by '|'.
static QString edgesOf(const CRectArray &a)
{
    QStringList out;
    for (int i = 0; i < a.GetCount(); ++i)
        out << QString::asprintf("%d %d %d %d", a.Get(i)->left, a.Get(i)->top, a.Get(i)->right,
                                 a.Get(i)->bottom);
    return out.join('|');
}

class tst_Arrays : public QObject
{
    Q_OBJECT

private slots:
    // Unlike the other arrays', CObArray's GetAt and [] are bounds-checked.
    void objArray()
    {
        CObArray a;
        for (int i : {0, 1, 2, 1})
            a.Add(&objects[i]);
        QVERIFY(a.GetAt(3) == &objects[1] && a[3] == &objects[1]);
        for (int bad : {-1, 4, INT_MAX})
            QVERIFY2(!a.GetAt(bad) && !a[bad], qPrintable(QString::number(bad)));
        QCOMPARE(a.Find(&objects[1]), 1); // the first of equal pointers
        QCOMPARE(a.Find(nullptr), -1);
    }

    void insertAndRemove_data()
    {
        QTest::addColumn<int>("insertAt");
        QTest::addColumn<int>("removeAt");
        QTest::addColumn<QList<int>>("expected");
        // Every row starts from 10, 20, 30 and inserts 99.
        QTest::newRow("insert front, -1 not removed") << 0 << -1 << QList<int> {99, 10, 20, 30};
        QTest::newRow("insert at size appends") << 3 << -1 << QList<int> {10, 20, 30, 99};
        QTest::newRow("remove first") << 3 << 0 << QList<int> {20, 30, 99};
        QTest::newRow("remove last") << 0 << 3 << QList<int> {99, 10, 20};
        QTest::newRow("remove at size ignored") << 0 << 4 << QList<int> {99, 10, 20, 30};
    }

    // The same edits on every index-addressed array; each maps 10, 20, 30, 99 to its own elements.
    void insertAndRemove()
    {
        QFETCH(int, insertAt);
        QFETCH(int, removeAt);
        QFETCH(QList<int>, expected);
        auto check = [&](auto array, auto element, auto number, const char *type) {
            for (int v : {10, 20, 30})
                array.Add(element(v));
            array.InsertAt(insertAt, element(99));
            array.RemoveAt(removeAt);
            QList<int> got;
            for (int i = 0; i < array.GetCount(); ++i)
                got << int(number(array.GetAt(i)));
            QVERIFY2(got == expected, type);
        };
        auto same = [](int v) { return v; };
        auto address = [](int v) { return &objects[v]; };
        auto index = [](const void *p) { return int(static_cast<const QObject *>(p) - objects); };
        check(CByteArray(), same, same, "byte");
        check(CWordArray(), same, same, "word");
        check(CIntArray(), same, same, "int");
        check(CUIntArray(), same, same, "uint");
        check(CObArray(), address, index, "object");
        check(CPtrArray(), address, index, "pointer");
        check(
            CStringArray(), [](int v) { return CString(QString::number(v)); },
            [](const CString &s) { return s.text.toInt(); }, "string");
    }

    void valueArrays()
    {
        // Full-width values survive, Copy replaces rather than appends, copies are independent.
        auto copy = [](auto a, auto low, auto high) {
            decltype(a) b;
            a.Add(high);
            a.Add(low);
            b.Add(low);
            b.Copy(a);
            b.Copy(b);
            a.RemoveAll();
            QVERIFY(b.GetSize() == 2 && b.GetAt(0) == high && b[1] == low);
        };
        copy(CByteArray(), uchar(0), uchar(0xFF));
        copy(CWordArray(), ushort(1), ushort(0xFFFF));
        copy(CIntArray(), INT_MIN, INT_MAX);
        copy(CStringArray(), CString("c,d"), CString("한글"));
        // SetAt replaces in place.
        auto setAt = [](auto a, auto first, auto value) {
            a.Add(first);
            a.Add(first);
            a.SetAt(1, value);
            QVERIFY(a.GetCount() == 2 && a.GetAt(0) == first && a[1] == value);
        };
        setAt(CUIntArray(), 1u, 0xFFFFFFFFu);
        setAt(CIntArray(), 1, -7);
        setAt(CStringArray(), CString("a"), CString("가"));
        // SetSize empties the array first: it never keeps existing elements.
        for (int size : {3, 7, 0, -1}) {
            CStringArray a;
            for (int i = 0; i < 5; ++i)
                a.Add(CString("kept?"));
            a.SetSize(size);
            QCOMPARE(a.GetSize(), qMax(size, 0));
            for (int i = 0; i < a.GetSize(); ++i)
                QVERIFY2(a.GetAt(i).IsEmpty(), "SetSize never keeps existing elements");
        }
    }

    void stringList_data()
    {
        QTest::addColumn<QByteArray>("wanted");
        QTest::addColumn<bool>("found");
        QTest::newRow("present") << QByteArray("Alpha") << true;
        QTest::newRow("letter case differs") << QByteArray("alpha") << false;
        QTest::newRow("prefix only") << QByteArray("Alp") << false;
        QTest::newRow("non-ASCII") << QByteArray("가나") << true;
        QTest::newRow("removed") << QByteArray("gone") << false;
    }

    void stringList()
    {
        QFETCH(QByteArray, wanted);
        QFETCH(bool, found);
        CStringList list;
        list.Add(CString("gone"));
        list.Add(CString("Alpha"));
        list.AddTail(CString("b"));
        list.SetAt(2, CString("가나"));
        for (int index : {3, -1, 0}) // 3 and -1 are out of range: ignored
            list.RemoveAt(index);
        QCOMPARE(list.GetCount(), 2);
        QCOMPARE(list[1].text, QString::fromUtf8("가나"));
        // The argument is a temporary: the result must outlive it, even once its memory is reused.
        const char *result = list.Find(CString(wanted.constData()));
        QByteArrayList reuse; // memory freed after the call is handed out again here
        for (int i = 0; i < 4; ++i)
            reuse << QByteArray(wanted.size(), '#') << QString(wanted.size(), '#').toUtf8();
        QCOMPARE(result ? QByteArray(result) : QByteArray("<null>"), found ? wanted : "<null>");
        list.RemoveAll();
        QCOMPARE(list.GetCount(), 0);
    }

    void rectArray()
    {
        CRectArray a;
        QCOMPARE(a.Set(CRect(0, 0, 1, 1), 10), 1); // out of range appends
        QCOMPARE(a.Set(CRect(0, 0, 2, 2), -1), 1);
        CRect *first = a.Get(0);
        QCOMPARE(a.Set(CRect(5, 5, 6, 6), 0), 1); // in range copies into the same block
        QCOMPARE(a.InsertAt(CRect(1, 1, 1, 1), -1), 0);
        QCOMPARE(a.InsertAt(CRect(7, 7, 7, 7), 0), 1);
        QCOMPARE(a.InsertAt(CRect(9, 9, 9, 9), 50), 1);
        QCOMPARE(a.Get(1), first); // pointers survive insertions before them
        QCOMPARE(edgesOf(a), "7 7 7 7|5 5 6 6|0 0 2 2|9 9 9 9");
        QVERIFY(!a.Get(-1) && !a.Get(4));
        for (int index : {4, 3, 0}) // 4 is beyond the end: nothing
            a.Delete(index);
        QCOMPARE(edgesOf(a), "5 5 6 6|0 0 2 2");
        {
            // Copies own blocks of their own; under the address sanitizer a shared or leaked
            // rectangle shows here.
            CRectArray b;
            b.Set(CRect(0, 0, 0, 0), 0);
            b = a;
            QVERIFY(b.Get(0) != a.Get(0));
            b.Get(0)->left = -100;
            CRectArray c(b);
            c = c;
            QCOMPARE(edgesOf(c), edgesOf(b));
        }
        QCOMPARE(edgesOf(a), "5 5 6 6|0 0 2 2");
        a.Delete(-1); // negative: frees them all
        QCOMPARE(a.GetCount(), 0);
    }
};

QTEST_APPLESS_MAIN(tst_Arrays)
#include "tst_arrays.moc"
