#include <CMapIntToOb.h>
#include <CMapPtrToOb.h>
#include <CMapStringToOb.h>
#include <CMapStringToPtr.h>
#include <CMapStringToString.h>
#include <CMapUIntToPtr.h>

#include <QtTest>

class tst_Maps : public QObject
{
    Q_OBJECT

private slots:
    void failedLookupAddsKey_data();
    void failedLookupAddsKey();
    void nullValueReadsAsAbsent();
    void keyOrder();
    void stringKeys_data();
    void stringKeys();
    void stringToString();
    void stringToPtrTake();
    void removal();
};

static QObject objectA, objectB;

// The same scenario on every pointer map: a failed Lookup or GetAt leaves the key behind.
template<typename Map, typename Key, typename Value>
static void checkLookup(Key absent, Key other, Value stored, bool viaGetAt)
{
    Map map;
    Value v = stored;
    if (viaGetAt) {
        QCOMPARE(map.GetAt(absent), Value(nullptr));
    } else {
        QVERIFY(!map.Lookup(absent, v));
        QCOMPARE(v, Value(nullptr));
    }
    QCOMPARE(map.GetCount(), 1);
    map.SetAt(other, stored);
    QVERIFY(map.Lookup(other, v));
    QCOMPARE(v, stored);
    QCOMPARE(map.GetAt(other), stored);
    QCOMPARE(map.GetCount(), 2);
}

void tst_Maps::failedLookupAddsKey_data()
{
    QTest::addColumn<bool>("viaGetAt");
    QTest::newRow("Lookup") << false;
    QTest::newRow("GetAt") << true;
}

void tst_Maps::failedLookupAddsKey()
{
    QFETCH(bool, viaGetAt);
    int x = 0, y = 0;
    checkLookup<CMapIntToOb>(5, 6, &objectA, viaGetAt);
    checkLookup<CMapPtrToOb>(static_cast<void *>(&x), static_cast<void *>(&y), &objectA, viaGetAt);
    checkLookup<CMapStringToOb>("k", "K", &objectA, viaGetAt);
    checkLookup<CMapUIntToPtr>(5u, 6u, static_cast<void *>(&x), viaGetAt);
    checkLookup<CMapStringToPtr>("k", "K", static_cast<void *>(&x), viaGetAt);

    CMapIntToOb map;
    QObject *v = &objectB;
    QVERIFY(!map.Lookup(5, v));
    QCOMPARE(map.GetKeyList(), QList<int> {5});
}

void tst_Maps::nullValueReadsAsAbsent()
{
    CMapIntToOb map;
    map.SetAt(5, &objectA);
    map.SetAt(5, nullptr); // replaces, does not add
    QObject *v = &objectB;
    QVERIFY(!map.Lookup(5, v));
    QVERIFY(!v);
    QCOMPARE(map.GetCount(), 1);
}

void tst_Maps::keyOrder()
{
    CMapIntToOb ints;
    for (int k : {3, 1, -2, 2})
        ints.SetAt(k, &objectA);
    QCOMPARE(ints.GetKeyList(), (QList<int> {-2, 1, 2, 3}));

    // Unsigned keys above INT_MAX sort last, and GetList gives the values in key order.
    int a = 0, b = 0, c = 0;
    CMapUIntToPtr uints;
    uints.SetAt(0xFFFFFFFFu, &c);
    uints.SetAt(1, &a);
    uints.SetAt(0x80000000u, &b);
    QCOMPARE(uints.GetList(), (QList<void *> {&a, &b, &c}));

    int cells[2] = {};
    CMapPtrToOb ptrs;
    ptrs.SetAt(&cells[1], &objectA);
    ptrs.SetAt(&cells[0], &objectB);
    QCOMPARE(ptrs.GetKeyList(), (QList<void *> {&cells[0], &cells[1]}));
}

void tst_Maps::stringKeys_data()
{
    QTest::addColumn<QStringList>("inserted");
    QTest::addColumn<QStringList>("listed");
    QTest::newRow("upper case sorts first")
        << QStringList {"b", "B", "a", "A"} << QStringList {"A", "B", "a", "b"};
    QTest::newRow("digits before letters")
        << QStringList {"x", "10", "9"} << QStringList {"10", "9", "x"};
    QTest::newRow("UTF-8 decoded")
        << QStringList {"나", "가", "z"} << QStringList {"z", "가", "나"};
    QTest::newRow("same key once") << QStringList {"k", "k"} << QStringList {"k"};
}

void tst_Maps::stringKeys()
{
    QFETCH(QStringList, inserted);
    QFETCH(QStringList, listed);
    CMapStringToOb obs;
    CMapStringToPtr ptrs;
    CMapStringToString strings;
    for (const QString &k : inserted) {
        const QByteArray utf8 = k.toUtf8();
        obs.SetAt(utf8.constData(), &objectA);
        ptrs.SetAt(utf8.constData(), &objectA);
        strings.SetAt(utf8.constData(), CString("v"));
    }
    QCOMPARE(QStringList(obs.GetKeyList()), listed);
    QCOMPARE(QStringList(ptrs.Keys()), listed);
    QCOMPARE(QStringList(strings.Keys()), listed);
    QCOMPARE(strings.GetCount(), listed.size());
}

void tst_Maps::stringToString()
{
    CMapStringToString map;
    map.SetAt("ABC", CString("value"));
    map.SetAt("blank", CString(""));
    CString v("stale");
    QVERIFY(map.Lookup("ABC", v));
    QCOMPARE(v.text, QStringLiteral("value"));
    QVERIFY(!map.Lookup("blank", v));
    QVERIFY(v.IsEmpty());

    v = "stale";
    QVERIFY(!map.Lookup("abc", v));
    QVERIFY(v.IsEmpty());
    QCOMPARE(map.GetCount(), 3);
    QVERIFY(map.GetAt("missing").IsEmpty());
    QCOMPARE(map.Keys(), (QList<QString> {"ABC", "abc", "blank", "missing"}));
    QCOMPARE(map.GetAt("ABC").text, QStringLiteral("value"));

    map.SetAt("키", CString("값"));
    QCOMPARE(QString::fromUtf8(map.GetAt("키").GetData()), QString::fromUtf8("값"));
}

void tst_Maps::stringToPtrTake()
{
    int x = 0;
    CMapStringToPtr map;
    QVERIFY(!map.Take("absent"));
    QCOMPARE(map.GetCount(), 0);
    map.SetAt("k", &x);
    QCOMPARE(map.Take("k"), static_cast<void *>(&x));
    QCOMPARE(map.GetCount(), 0);
    map.SetAt("k", &x);
    map.Clear();
    QVERIFY(map.Keys().isEmpty());
}

void tst_Maps::removal()
{
    CMapIntToOb ints;
    ints.SetAt(1, &objectA);
    ints.SetAt(2, &objectB);
    ints.RemoveKey(3);
    ints.RemoveKey(1);
    QCOMPARE(ints.GetKeyList(), QList<int> {2});
    ints.RemoveAll();
    QCOMPARE(ints.GetCount(), 0);
    QCOMPARE(objectB.objectName(), QString()); // the objects themselves are untouched

    CMapStringToString strings;
    strings.SetAt("a", CString("1"));
    strings.RemoveKey("b");
    strings.RemoveKey("a");
    QCOMPARE(strings.GetCount(), 0);
}

QTEST_APPLESS_MAIN(tst_Maps)
#include "tst_maps.moc"
