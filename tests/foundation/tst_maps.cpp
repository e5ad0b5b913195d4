// SPDX-License-Identifier: MIT
#include <Vantor.h>

#include <QtTest>

static QObject objectA, objectB;

// The same scenario on every pointer map: a failed Lookup or GetAt leaves the key behind, and a
// key stored with a null value reads as absent.
template<typename Map, typename Key, typename Value>
static void checkLookup(Key first, Key second, Value stored)
{
    Map map;
    Value v = stored;
    QVERIFY(!map.Lookup(first, v) && v == nullptr);
    QCOMPARE(map.GetCount(), 1);
    QCOMPARE(map.GetAt(second), Value(nullptr));
    QCOMPARE(map.GetCount(), 2);
    map.SetAt(second, stored);
    QVERIFY(map.Lookup(second, v) && v == stored);
    QCOMPARE(map.GetAt(second), stored);
    map.SetAt(second, nullptr); // replaces, does not add
    v = stored;
    QVERIFY(!map.Lookup(second, v) && v == nullptr);
    QCOMPARE(map.GetCount(), 2);
}

class tst_Maps : public QObject
{
    Q_OBJECT

private slots:
    void failedLookupAddsKey()
    {
        int x = 0, y = 0;
        checkLookup<CMapIntToOb>(5, 6, &objectA);
        checkLookup<CMapPtrToOb>(static_cast<void *>(&x), static_cast<void *>(&y), &objectA);
        checkLookup<CMapStringToOb>("k", "K", &objectA);
        checkLookup<CMapUIntToPtr>(5u, 6u, static_cast<void *>(&x));
        checkLookup<CMapStringToPtr>("k", "K", static_cast<void *>(&x));
    }

    // Every listing is in ascending key order.
    void keyOrder()
    {
        CMapIntToOb ints;
        QObject *v = &objectB;
        QVERIFY(!ints.Lookup(5, v)); // listed like any other key
        for (int k : {3, 1, -2, 2})
            ints.SetAt(k, &objectA);
        QCOMPARE(ints.GetKeyList(), (QList<int> {-2, 1, 2, 3, 5}));
        ints.RemoveKey(7);
        ints.RemoveKey(1);
        QCOMPARE(ints.GetKeyList(), (QList<int> {-2, 2, 3, 5}));
        ints.RemoveAll();
        QCOMPARE(ints.GetCount(), 0);

        // Unsigned keys above INT_MAX sort last, and GetList gives the values in key order.
        int a = 0, b = 0, c = 0;
        CMapUIntToPtr uints;
        for (auto [key, value] : {std::pair {0xFFFFFFFFu, &c}, {1u, &a}, {0x80000000u, &b}})
            uints.SetAt(key, value);
        QCOMPARE(uints.GetList(), (QList<void *> {&a, &b, &c}));

        int cells[2] = {};
        CMapPtrToOb ptrs;
        ptrs.SetAt(&cells[1], &objectA);
        ptrs.SetAt(&cells[0], &objectB);
        QCOMPARE(ptrs.GetKeyList(), (QList<void *> {&cells[0], &cells[1]}));

        // Text keys are decoded from UTF-8 and ordered as QString orders them: case-sensitive.
        CMapStringToOb obs;
        CMapStringToPtr texts;
        CMapStringToString strings;
        for (const char *k : {"b", "B", "나", "a", "가", "z", "A"}) {
            obs.SetAt(k, &objectA);
            texts.SetAt(k, &objectA);
            strings.SetAt(k, CString("v"));
        }
        const QStringList listed {"A", "B", "a", "b", "z", "가", "나"};
        QCOMPARE(QStringList(obs.GetKeyList()), listed);
        QCOMPARE(QStringList(texts.Keys()), listed);
        QCOMPARE(QStringList(strings.Keys()), listed);
    }

    // Strings: an empty one reads as absent, and a failed Lookup empties the value and adds the
    // key.
    void strings()
    {
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
};

QTEST_APPLESS_MAIN(tst_Maps)
#include "tst_maps.moc"
