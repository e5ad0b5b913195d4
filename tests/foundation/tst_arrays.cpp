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

class tst_Arrays : public QObject
{
    Q_OBJECT

private slots:
    void objArrayAccess_data();
    void objArrayAccess();
    void insertAndRemove_data();
    void insertAndRemove();
    void valueArrays();
    void stringArraySetSize_data();
    void stringArraySetSize();
    void stringList_data();
    void stringList();
    void rectArray();
};

// Distinct objects; the arrays only hold their addresses.
static QObject objects[100];
static CObList emptyList; // declarable, as ported code does

void tst_Arrays::objArrayAccess_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("expected"); // index into objects, or -1 for null
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("last") << 3 << 1;
    QTest::newRow("negative") << -1 << -1;
    QTest::newRow("size") << 4 << -1;
    QTest::newRow("far beyond") << INT_MAX << -1;
}

// Unlike the other arrays', CObArray's GetAt and [] are bounds-checked.
void tst_Arrays::objArrayAccess()
{
    QFETCH(int, index);
    QFETCH(int, expected);
    CObArray a;
    for (int i : {0, 1, 2, 1})
        a.Add(&objects[i]);
    const QObject *want = expected < 0 ? nullptr : &objects[expected];
    QCOMPARE(a.GetAt(index), want);
    QCOMPARE(a[index], want);
    QCOMPARE(a.Find(&objects[1]), 1); // the first of equal pointers
    QCOMPARE(a.Find(nullptr), -1);
}

void tst_Arrays::insertAndRemove_data()
{
    QTest::addColumn<int>("insertAt");
    QTest::addColumn<int>("removeAt");
    QTest::addColumn<QList<int>>("expected");
    // Every row starts from 10, 20, 30 and inserts 99.
    QTest::newRow("insert front, remove negative ignored")
        << 0 << -1 << QList<int> {99, 10, 20, 30};
    QTest::newRow("insert middle") << 1 << -1 << QList<int> {10, 99, 20, 30};
    QTest::newRow("insert at size appends") << 3 << -1 << QList<int> {10, 20, 30, 99};
    QTest::newRow("remove first") << 3 << 0 << QList<int> {20, 30, 99};
    QTest::newRow("remove last") << 0 << 3 << QList<int> {99, 10, 20};
    QTest::newRow("remove at size ignored") << 0 << 4 << QList<int> {99, 10, 20, 30};
}

// The same edits on every index-addressed array; each maps 10, 20, 30, 99 to its own elements.
void tst_Arrays::insertAndRemove()
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

// Full-width values survive, Copy replaces rather than appends, copies are independent.
template<typename Array, typename T>
static void checkValueArray(T low, T high)
{
    Array a, b;
    a.Add(high);
    a.Add(low);
    QVERIFY(a.GetAt(0) == high && a[1] == low);
    b.Add(low);
    b.Copy(a);
    b.Copy(b);
    a.RemoveAll();
    QCOMPARE(b.GetSize(), 2);
    QVERIFY(b.GetAt(0) == high && b.GetAt(1) == low);
}

void tst_Arrays::valueArrays()
{
    checkValueArray<CByteArray, unsigned char>(0, 0xFF);
    checkValueArray<CWordArray, unsigned short>(1, 0xFFFF);
    checkValueArray<CIntArray, int>(INT_MIN, INT_MAX);
    checkValueArray<CStringArray, CString>(CString("c,d"), CString("한글"));

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

void tst_Arrays::stringList_data()
{
    QTest::addColumn<QByteArray>("wanted");
    QTest::addColumn<bool>("found");
    QTest::newRow("present") << QByteArray("Alpha") << true;
    QTest::newRow("letter case differs") << QByteArray("alpha") << false;
    QTest::newRow("prefix only") << QByteArray("Alp") << false;
    QTest::newRow("non-ASCII") << QByteArray("가나") << true;
    QTest::newRow("empty string absent") << QByteArray("") << false;
    QTest::newRow("removed") << QByteArray("gone") << false;
}

void tst_Arrays::stringList()
{
    QFETCH(QByteArray, wanted);
    QFETCH(bool, found);
    CStringList list;
    list.Add(CString("gone"));
    list.Add(CString("Alpha"));
    list.AddTail(CString("b"));
    list.SetAt(2, CString("가나"));
    list.RemoveAt(3);
    list.RemoveAt(-1);
    list.RemoveAt(0);
    QCOMPARE(list.GetCount(), 2);
    QCOMPARE(list[1].text, QString::fromUtf8("가나"));
    // The argument is a temporary: the result must outlive it, even once its memory is reused.
    const char *result = list.Find(CString(wanted.constData()));
    QByteArrayList reuse; // memory freed after the call is handed out again here
    for (int i = 0; i < 4; ++i)
        reuse << QByteArray(wanted.size(), '#') << QString(wanted.size(), '#').toUtf8();
    QCOMPARE(result != nullptr, found);
    if (found)
        QCOMPARE(QByteArray(result), wanted);
    list.RemoveAll();
    QCOMPARE(list.GetCount(), 0);
}

static QList<QRect> rectsOf(const CRectArray &a)
{
    QList<QRect> out;
    for (int i = 0; i < a.GetCount(); ++i)
        out << QRect(QPoint(a.Get(i)->left, a.Get(i)->top),
                     QPoint(a.Get(i)->right, a.Get(i)->bottom));
    return out;
}

void tst_Arrays::rectArray()
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
    QCOMPARE(rectsOf(a),
             (QList<QRect> {QRect(7, 7, 1, 1), QRect(5, 5, 2, 2), QRect(0, 0, 3, 3),
                            QRect(9, 9, 1, 1)}));
    QVERIFY(!a.Get(-1) && !a.Get(4));
    a.Delete(4); // beyond the end: nothing
    a.Delete(3);
    a.Delete(0);
    QCOMPARE(rectsOf(a), (QList<QRect> {QRect(5, 5, 2, 2), QRect(0, 0, 3, 3)}));
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
        QCOMPARE(rectsOf(c), rectsOf(b));
    }
    QCOMPARE(rectsOf(a), (QList<QRect> {QRect(5, 5, 2, 2), QRect(0, 0, 3, 3)}));
    a.Delete(-1); // negative: frees them all
    QCOMPARE(a.GetCount(), 0);
}

QTEST_APPLESS_MAIN(tst_Arrays)
#include "tst_arrays.moc"
