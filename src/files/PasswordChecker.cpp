// SPDX-License-Identifier: MIT
#include "PasswordChecker.h"

int PasswordChecker::IsValid(CString password)
{
    const QByteArray bytes = password.text.toUtf8();
    if (bytes.size() <= 7)
        return 1;
    int letters = 0;
    int digits = 0;
    int others = 0;
    for (const char c : bytes) {
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'))
            ++letters;
        else if (c >= '0' && c <= '9')
            ++digits;
        else
            ++others;
    }
    return (letters && digits && others) ? 0 : 2;
}
