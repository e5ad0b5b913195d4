// SPDX-License-Identifier: MIT
// A tiny application outside the tree, built against the installed package.
#include <Vantor.h>

#include <cstdio>
#include <cstring>

int main()
{
    Vantor module;
    (void)module;
    CString s("a,b");
    const bool escaped = std::strcmp(s.GetData(true), "a`b") == 0;
    SYSTEMTIME st = {};
    st.wYear = 2026;
    // The Qt this program was compiled against is the one it runs with, and the one named.
    const bool sameQt =
        QByteArray(qVersion()).startsWith(QByteArray::number(QT_VERSION_MAJOR) + '.');
    const bool ok = escaped && sameQt && s.GetLength() == 3 && st.wYear == 2026;
    std::printf(ok ? "ok qt%d\n" : "failed\n", QT_VERSION_MAJOR);
    return ok ? 0 : 1;
}
