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
    std::printf("%s\n", escaped && s.GetLength() == 3 && st.wYear == 2026 ? "ok" : "failed");
    return escaped ? 0 : 1;
}
