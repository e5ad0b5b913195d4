// SPDX-License-Identifier: MIT
#include "Number.h"

#include <climits>
#include <cmath>
#include <cstring>

namespace {

int isNumber(const char *s, int len, bool allowDecimal)
{
    bool point = false;
    for (int i = 0; i < len; ++i) {
        const char c = s[i];
        if ((c >= '0' && c <= '9') || c == '-')
            continue;
        if (c == '.') {
            point = true;
            continue;
        }
        if (c == 'E' && i + 1 < len && (s[i + 1] == '+' || s[i + 1] == '-')) {
            ++i;
            continue;
        }
        return 0;
    }
    return (!point || allowDecimal) ? 1 : 0;
}

} // namespace

int Number::IsNumber(char *str, bool allowDecimal)
{
    if (!str)
        return 1;
    return isNumber(str, int(qMin<size_t>(std::strlen(str), INT_MAX)), allowDecimal);
}

int Number::IsNumber(CString str, bool allowDecimal)
{
    const QByteArray bytes = str.text.toUtf8();
    return isNumber(bytes.constData(), bytes.size(), allowDecimal);
}

int Number::ToInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= double(INT_MAX))
        return INT_MAX;
    if (value <= double(INT_MIN))
        return INT_MIN;
    const int truncated = int(value);
    if (value - truncated >= 0.5)
        return int(value + 1);
    return truncated;
}
