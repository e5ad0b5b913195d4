// SPDX-License-Identifier: MIT
// Arrays and maps: thin value classes with the class-library member names.
#include "Demo.h"

#include <Vantor.h>

static int run(DemoContext &)
{
    CStringArray tags;
    tags.Add(CString("PT-101"));
    tags.Add(CString("LT-205"));
    tags.InsertAt(1, CString("FT-150"));
    QStringList listed;
    for (int i = 0; i < tags.GetSize(); ++i)
        listed << tags.GetAt(i).text;
    demoSay(QStringLiteral("CStringArray: %1 (out of range GetAt(9) gives \"%2\")")
                .arg(listed.join(QStringLiteral(", ")), tags.GetAt(9).text));

    CMapStringToString units;
    units.SetAt("pressure", CString("bar"));
    units.SetAt("level", CString("cm"));
    CString unit;
    const bool found = units.Lookup("flow", unit);
    demoSay(QStringLiteral("CMapStringToString: Lookup(\"flow\") found=%1, and the map now has %2 "
                           "keys in ascending order: %3")
                .arg(found ? QStringLiteral("true") : QStringLiteral("false"))
                .arg(units.GetCount())
                .arg(units.Keys().join(QStringLiteral(", "))));

    CRect r(10, 20, 0, 5); // normalised by the constructor
    demoSay(QStringLiteral("CRect(10, 20, 0, 5) holds (%1, %2, %3, %4), %5 x %6 (edges inclusive)")
                .arg(r.left)
                .arg(r.top)
                .arg(r.right)
                .arg(r.bottom)
                .arg(r.Width())
                .arg(r.Height()));
    return 0;
}

static DemoSection section(15, "Arrays, maps and rectangles", run);
