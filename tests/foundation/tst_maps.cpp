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
    void keyOrderAndRemoval();
    void stringKeys_data();
    void stringKeys();
    void strings();
};

static QObject objectA, objectB;

// The same scenario on every pointer map: a failed Lookup or GetAt leaves the key behind, and a
// key stored with a null value reads as absent.
template<typename Map, typename Key, typename Value>
static void checkLookup(Key absent, Key other, Value stored, bool viaGetAt)
{
    Map map;
    Value v = stored;
    if (viaGetAt)
        QCOMPARE(map.GetAt(absent), Value(nullptr));
    else
        QVERIFY(!map.Lookup(absent, v) && v == nullptr);
    QCOMPARE(map.GetCount(), 1);
    map.SetAt(other, stored);
    QVERIFY(map.Lookup(other, v) && v == stored);
    QCOMPARE(map.GetAt(other), stored);
    map.SetAt(other, nullptr); // replaces, does not add
    v = stored;
    QVERIFY(!map.Lookup(other, v) && v == nullptr);
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

void tst_Maps::keyOrderAndRemoval()
{
    CMapIntToOb ints;
    for (int k : {3, 1, -2, 2})
        ints.SetAt(k, &objectA);
    QCOMPARE(ints.GetKeyList(), (QList<int> {-2, 1, 2, 3}));
    ints.RemoveKey(7);
    ints.RemoveKey(1);
    QCOMPARE(ints.GetKeyList(), (QList<int> {-2, 2, 3}));
    ints.RemoveAll();
    QCOMPARE(ints.GetCount(), 0);

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

void tst_Maps::strings()
{
    // Strings: an empty one reads as absent, and a failed Lookup empties the value and adds the
    // key.
    CMapStringToString map;
    map.SetAt("ABC", CString("value"));
    map.SetAt("blank", CString(""));
    CString v("stale");
    QVERIFY(map.Lookup("ABC", v) && v.text == QStringLiteral("value"));
    QVERIFY(!map.Lookup("blank", v) && v.IsEmpty());
    v = "stale";
    QVERIFY(!map.Lookup("abc", v) && v.IsEmpty());
    QVERIFY(map.GetAt("missing").IsEmpty());
    QCOMPARE(map.Keys(), (QList<QString> {"ABC", "abc", "blank", "missing"}));
    map.SetAt("키", CString("값"));
    QCOMPARE(QString::fromUtf8(map.GetAt("키").GetData()), QString::fromUtf8("값"));
    map.RemoveKey("none");
    map.RemoveKey("ABC");
    QCOMPARE(map.Keys(), (QList<QString> {"abc", "blank", "missing", "키"}));
    map.RemoveAll();
    QCOMPARE(map.GetCount(), 0);

    // Take removes without adding.
    int x = 0;
    CMapStringToPtr ptrs;
    QVERIFY(!ptrs.Take("absent") && ptrs.GetCount() == 0);
    ptrs.SetAt("k", &x);
    QVERIFY(ptrs.Take("k") == &x && ptrs.GetCount() == 0);
    ptrs.SetAt("k", &x);
    ptrs.Clear();
    QVERIFY(ptrs.Keys().isEmpty());
}

QTEST_APPLESS_MAIN(tst_Maps)
#include "tst_maps.moc"
