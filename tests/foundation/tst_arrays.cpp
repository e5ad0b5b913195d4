#include <CByteArray.h>
#include <CIntArray.h>
#include <CObArray.h>
#include <CObList.h>
#include <CPtrArray.h>
#include <CRectArray.h>
#include <CStringArray.h>
#include <CStringList.h>
#include <CUIntArray.h>
#include <CWordArray.h>

#include <QtTest>

#include <climits>
#include <cstring>

class tst_Arrays : public QObject
{
    Q_OBJECT

private slots:
    void objArrayAccess_data();
    void objArrayAccess();
    void find();
    void insertAndRemove_data();
    void insertAndRemove();
    void valueArrays();
    void stringArray();
    void stringArraySetSize_data();
    void stringArraySetSize();
    void stringListFind_data();
    void stringListFind();
    void stringList();
    void rectArraySetAndInsert();
    void rectArrayDelete_data();
    void rectArrayDelete();
    void rectArrayOwnsCopies();
};

// Three distinct objects; the arrays only hold their addresses.
static QObject objects[3];

void tst_Arrays::objArrayAccess_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("expected"); // index into objects, or -1 for null
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("last") << 2 << 2;
    QTest::newRow("negative") << -1 << -1;
    QTest::newRow("size") << 3 << -1;
    QTest::newRow("far beyond") << INT_MAX << -1;
}

void tst_Arrays::objArrayAccess()
{
    QFETCH(int, index);
    QFETCH(int, expected);
    CObArray a;
    for (const QObject &o : objects)
        a.Add(&o);
    const QObject *want = expected < 0 ? nullptr : &objects[expected];
    QCOMPARE(a.GetAt(index), want);
    QCOMPARE(a[index], want);
    a.RemoveAt(index);
    QCOMPARE(a.GetSize(), expected < 0 ? 3 : 2);
    QCOMPARE(a.Find(&objects[0]), expected == 0 ? -1 : 0);
}

void tst_Arrays::find()
{
    CObArray a;
    QCOMPARE(a.Find(&objects[0]), -1);
    QVERIFY(a.IsEmpty());
    a.Add(&objects[1]);
    a.Add(&objects[0]);
    a.Add(&objects[1]);
    QCOMPARE(a.Find(&objects[1]), 0);
    QCOMPARE(a.Find(&objects[0]), 1);
    QCOMPARE(a.Find(&objects[2]), -1);
    a.RemoveAll();
    QVERIFY(a.IsEmpty());
    QCOMPARE(a.GetCount(), 0);

    int values[2] = {};
    CPtrArray p;
    p.Add(&values[0]);
    p.Add(&values[1]);
    p.Add(&values[1]);
    QCOMPARE(p.Find(&values[1]), 1);
    QCOMPARE(p.Find(nullptr), -1);
    QCOMPARE(p[2], static_cast<const void *>(&values[1]));
    p.RemoveAt(3);
    QCOMPARE(p.GetCount(), 3);
}

void tst_Arrays::insertAndRemove_data()
{
    QTest::addColumn<int>("insertAt");
    QTest::addColumn<int>("removeAt");
    QTest::addColumn<QList<int>>("expected");
    // Every row starts from 10, 20, 30 and inserts 99.
    QTest::newRow("insert front") << 0 << -1 << QList<int> {99, 10, 20, 30};
    QTest::newRow("insert middle") << 1 << -1 << QList<int> {10, 99, 20, 30};
    QTest::newRow("insert at size appends") << 3 << -1 << QList<int> {10, 20, 30, 99};
    QTest::newRow("remove first") << 3 << 0 << QList<int> {20, 30, 99};
    QTest::newRow("remove last") << 0 << 3 << QList<int> {99, 10, 20};
    QTest::newRow("remove at size ignored") << 0 << 4 << QList<int> {99, 10, 20, 30};
}

void tst_Arrays::insertAndRemove()
{
    QFETCH(int, insertAt);
    QFETCH(int, removeAt);
    QFETCH(QList<int>, expected);
    CIntArray a;
    CObArray o;
    for (int v : {10, 20, 30}) {
        a.Add(v);
        o.Add(&objects[v / 10 - 1]);
    }
    a.InsertAt(insertAt, 99);
    o.InsertAt(insertAt, nullptr);
    a.RemoveAt(removeAt);
    o.RemoveAt(removeAt);
    QList<int> got;
    for (int i = 0; i < a.GetSize(); ++i)
        got << a.GetAt(i);
    QCOMPARE(got, expected);
    QCOMPARE(o.GetSize(), expected.size());
    QCOMPARE(o.Find(nullptr), expected.indexOf(99));
}

// Full-width values survive, Copy replaces rather than appends, SetAt replaces in place.
template<typename Array, typename T>
static void checkValueArray(T low, T high)
{
    Array a;
    a.Add(high);
    a.Add(low);
    QCOMPARE(a.GetAt(0), high);
    QCOMPARE(a[1], low);
    Array b;
    b.Add(low);
    b.Add(low);
    b.Add(low);
    b.Copy(a);
    QCOMPARE(b.GetSize(), 2);
    QCOMPARE(b.GetAt(0), high);
    b.Copy(b);
    QCOMPARE(b.GetCount(), 2);
    a.RemoveAll();
    QCOMPARE(b.GetAt(1), low); // copies are independent
}

void tst_Arrays::valueArrays()
{
    checkValueArray<CByteArray, unsigned char>(0, 0xFF);
    checkValueArray<CWordArray, unsigned short>(1, 0xFFFF);
    checkValueArray<CIntArray, int>(INT_MIN, INT_MAX);

    CUIntArray u;
    u.Add(1);
    u.Add(0xFFFFFFFFu);
    u.SetAt(0, 0x80000000u);
    QCOMPARE(u.GetAt(0), 0x80000000u);
    QCOMPARE(u[1], 0xFFFFFFFFu);
    CIntArray i;
    i.Add(1);
    i.SetAt(0, -7);
    QCOMPARE(i.GetAt(0), -7);
}

void tst_Arrays::stringArray()
{
    CStringArray a;
    a.Add(CString("한글"));
    a.Add(CString("b"));
    a.InsertAt(0, CString("first"));
    a.SetAt(2, CString("c,d"));
    QCOMPARE(a.GetSize(), 3);
    QCOMPARE(QString::fromUtf8(a.GetAt(1).GetData()), QString::fromUtf8("한글"));
    QCOMPARE(a[2].text, QStringLiteral("c,d"));
    a.RemoveAt(3);
    a.RemoveAt(-1);
    QCOMPARE(a.GetCount(), 3);
    a.RemoveAt(0);
    QCOMPARE(a[0].text, QString::fromUtf8("한글"));

    CStringArray b;
    b.Add(CString("x"));
    b.Copy(a);
    QCOMPARE(b.GetSize(), 2);
    QCOMPARE(b.GetAt(1).text, QStringLiteral("c,d"));
}

void tst_Arrays::stringArraySetSize_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("after");
    QTest::newRow("shrink drops the rest") << 5 << 3 << 3;
    QTest::newRow("grow") << 2 << 4 << 4;
    QTest::newRow("zero") << 2 << 0 << 0;
    QTest::newRow("negative") << 2 << -1 << 0;
}

void tst_Arrays::stringArraySetSize()
{
    QFETCH(int, before);
    QFETCH(int, size);
    QFETCH(int, after);
    CStringArray a;
    for (int i = 0; i < before; ++i)
        a.Add(CString("kept?"));
    a.SetSize(size);
    QCOMPARE(a.GetSize(), after);
    for (int i = 0; i < after; ++i)
        QVERIFY2(a.GetAt(i).IsEmpty(), "SetSize never keeps existing elements");
}

void tst_Arrays::stringListFind_data()
{
    QTest::addColumn<QByteArray>("wanted");
    QTest::addColumn<bool>("found");
    QTest::newRow("present") << QByteArray("Alpha") << true;
    QTest::newRow("letter case differs") << QByteArray("alpha") << false;
    QTest::newRow("prefix only") << QByteArray("Alp") << false;
    QTest::newRow("non-ASCII") << QByteArray("가나") << true;
    QTest::newRow("empty string absent") << QByteArray("") << false;
}

void tst_Arrays::stringListFind()
{
    QFETCH(QByteArray, wanted);
    QFETCH(bool, found);
    CStringList list;
    list.Add(CString("Alpha"));
    list.AddTail(CString("가나"));
    // The argument is a temporary: the result must outlive it.
    const char *result = list.Find(CString(wanted.constData()));
    QCOMPARE(result != nullptr, found);
    if (found)
        QCOMPARE(QByteArray(result), wanted);
}

void tst_Arrays::stringList()
{
    CStringList list;
    list.Add(CString("a"));
    list.AddTail(CString("b"));
    list.Add(CString("c"));
    list.SetAt(1, CString("B"));
    QCOMPARE(list.GetCount(), 3);
    QCOMPARE(list.GetAt(1).text, QStringLiteral("B"));
    list.RemoveAt(3);
    QCOMPARE(list.GetCount(), 3);
    list.RemoveAt(0);
    QCOMPARE(list[0].text, QStringLiteral("B"));
    QVERIFY(!list.Find(CString("a")));
    list.RemoveAll();
    QCOMPARE(list.GetCount(), 0);
    CObList empty; // declarable, as ported code does
    Q_UNUSED(empty);
}

static QList<QRect> rectsOf(const CRectArray &a)
{
    QList<QRect> out;
    for (int i = 0; i < a.GetCount(); ++i)
        out << QRect(QPoint(a.Get(i)->left, a.Get(i)->top),
                     QPoint(a.Get(i)->right, a.Get(i)->bottom));
    return out;
}

void tst_Arrays::rectArraySetAndInsert()
{
    CRectArray a;
    QCOMPARE(a.Set(CRect(0, 0, 1, 1), 10), 1); // out of range appends
    QCOMPARE(a.GetCount(), 1);
    QCOMPARE(a.Set(CRect(0, 0, 2, 2), -1), 1);
    QCOMPARE(a.GetCount(), 2);
    CRect *first = a.Get(0);
    QCOMPARE(a.Set(CRect(5, 5, 6, 6), 0), 1); // in range copies into the same block
    QCOMPARE(a.Get(0), first);
    QCOMPARE(a.GetCount(), 2);

    QCOMPARE(a.InsertAt(CRect(1, 1, 1, 1), -1), 0);
    QCOMPARE(a.GetCount(), 2);
    QCOMPARE(a.InsertAt(CRect(7, 7, 7, 7), 0), 1);
    QCOMPARE(a.InsertAt(CRect(9, 9, 9, 9), 50), 1);
    QCOMPARE(a.Get(1), first);
    QCOMPARE(rectsOf(a),
             (QList<QRect> {QRect(7, 7, 1, 1), QRect(5, 5, 2, 2), QRect(0, 0, 3, 3),
                            QRect(9, 9, 1, 1)}));
    QVERIFY(!a.Get(-1));
    QVERIFY(!a.Get(4));
}

void tst_Arrays::rectArrayDelete_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("remaining");
    QTest::newRow("negative empties") << -1 << 0;
    QTest::newRow("first") << 0 << 2;
    QTest::newRow("last") << 2 << 2;
    QTest::newRow("beyond end") << 3 << 3;
}

void tst_Arrays::rectArrayDelete()
{
    QFETCH(int, index);
    QFETCH(int, remaining);
    CRectArray a;
    for (int i = 0; i < 3; ++i)
        a.Set(CRect(i, i, i + 1, i + 1), i);
    a.Delete(index);
    QCOMPARE(a.GetCount(), remaining);
    if (remaining == 2)
        QCOMPARE(a.Get(0)->left, index == 0 ? 1 : 0);
}

void tst_Arrays::rectArrayOwnsCopies()
{
    // Run under the address sanitizer, a shared or leaked rectangle shows here.
    CRectArray a;
    a.Set(CRect(1, 2, 3, 4), 0);
    a.Set(CRect(5, 6, 7, 8), 1);
    {
        CRectArray b;
        b.Set(CRect(0, 0, 0, 0), 0);
        b = a;
        QVERIFY(b.Get(0) != a.Get(0));
        b.Get(0)->left = -100;
        CRectArray c(b);
        c = c;
        QCOMPARE(rectsOf(c), rectsOf(b));
    }
    QCOMPARE(a.Get(0)->left, 1);
    QCOMPARE(rectsOf(a).size(), 2);
}

QTEST_APPLESS_MAIN(tst_Arrays)
#include "tst_arrays.moc"
