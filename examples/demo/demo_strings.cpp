// SPDX-License-Identifier: MIT
// CString: Unicode inside, UTF-8 at every 8-bit boundary, and the comma-text escape.
#include "Demo.h"

#include <Vantor.h>

static int run(DemoContext &)
{
    CString s("수온, 12.5\r\n");
    demoSay(QStringLiteral("text \"%1\": %2 UTF-16 units, %3 UTF-8 bytes")
                .arg(s.text.trimmed())
                .arg(s.GetLength(false))
                .arg(s.GetLength(true)));
    demoSay(QStringLiteral("escaped for a comma-delimited file: %1")
                .arg(QString::fromUtf8(s.GetData(true))));
    CString f;
    f.Format("%s=%05.1f", "level", 3.14159);
    demoSay(QStringLiteral("Format: %1").arg(f.text));
    char buf[8];
    char src[] = "ab,c    ";
    MakeString(buf, src, sizeof buf, 1);
    demoSay(QStringLiteral("MakeString into 8 bytes: \"%1\"").arg(QString::fromUtf8(buf)));
    return 0;
}

static DemoSection section(10, "Strings", run);
