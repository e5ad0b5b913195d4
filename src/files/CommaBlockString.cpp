// SPDX-License-Identifier: MIT
#include "CommaBlockString.h"

#include "TextRules_p.h"

#include <cstring>

CommaBlockString::CommaBlockString()
    : m_nPos(0)
    , m_nLength(0)
    , m_cBlockCode(',')
{ }

CommaBlockString::~CommaBlockString() = default;

int CommaBlockString::Set(CString text)
{
    m_strData = text;
    m_nPos = 0;
    m_nLength = m_strData.text.size();
    return m_nLength;
}

void CommaBlockString::SetBlockCode(char code)
{
    m_cBlockCode = code;
}

bool CommaBlockString::IsEOS()
{
    return m_nPos >= m_nLength;
}

int CommaBlockString::GetString(CString &field)
{
    field.Empty();
    const QString &text = m_strData.text;
    // A derived class may have changed the text since Set(): never index beyond it.
    const int end = qMin(m_nLength, text.size());
    if (m_nPos >= end)
        return m_nPos;

    const QChar block = QLatin1Char(m_cBlockCode);
    const QChar *data = text.constData();
    const auto endsField = [block](QChar c) {
        return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == block;
    };
    int start = m_nPos;
    while (start < end && !endsField(data[start]) &&
           (data[start] == QLatin1Char(' ') || data[start] == QLatin1Char('\t')))
        ++start;
    int stop = start;
    while (stop < end && !endsField(data[stop]))
        ++stop;
    // Taken in one piece; an empty field stays a null string.
    field.text = stop > start ? text.mid(start, stop - start) : QString();
    m_nPos = stop < end ? stop + 1 : stop;
    return m_nPos;
}

CString CommaBlockString::GetString()
{
    CString field;
    GetString(field);
    return field;
}

int CommaBlockString::GetString(char *buffer, int size)
{
    CString field;
    const int pos = GetString(field);
    if (!buffer || size <= 0)
        return pos;
    const char *bytes = field.GetData();
    const size_t length = std::strlen(bytes);
    if (length < static_cast<size_t>(size))
        std::memcpy(buffer, bytes, length + 1);
    else
        buffer[0] = 0;
    return pos;
}

int CommaBlockString::GetStringTotalRemain(CString &rest)
{
    rest.Empty();
    const QString &text = m_strData.text;
    const int end = qMin(m_nLength, text.size());
    if (m_nPos >= end)
        return m_nPos;
    while (m_nPos < end &&
           (text.at(m_nPos) == QLatin1Char(' ') || text.at(m_nPos) == QLatin1Char('\t')))
        ++m_nPos;
    rest.text = text.mid(m_nPos, end - m_nPos);
    m_nPos = m_nLength;
    return m_nPos;
}

int CommaBlockString::Skip()
{
    CString field;
    return GetString(field);
}

// Every conversion reads its field through the virtual GetString(CString&).

int CommaBlockString::GetInt(int &value)
{
    CString field;
    GetString(field);
    value = VantorText::atoi32(field.GetData());
    return value;
}

int CommaBlockString::GetInt()
{
    int value;
    return GetInt(value);
}

short CommaBlockString::GetInt(short &value)
{
    int full;
    GetInt(full);
    value = static_cast<short>(full);
    return value;
}

long CommaBlockString::GetLong(long &value)
{
    int full;
    GetInt(full);
    value = full;
    return value;
}

long CommaBlockString::GetLong()
{
    long value;
    return GetLong(value);
}

unsigned int CommaBlockString::GetDWORD(unsigned int &value)
{
    int full;
    GetInt(full);
    value = static_cast<unsigned int>(full);
    return value;
}

unsigned long CommaBlockString::GetDWORD(unsigned long &value)
{
    unsigned int full;
    GetDWORD(full);
    value = full;
    return value;
}

unsigned short CommaBlockString::GetWORD(unsigned short &value)
{
    int full;
    GetInt(full);
    value = static_cast<unsigned short>(full);
    return value;
}

unsigned char CommaBlockString::GetBYTE(unsigned char &value)
{
    int full;
    GetInt(full);
    value = static_cast<unsigned char>(full);
    return value;
}

char CommaBlockString::GetChar(char &value)
{
    CString field;
    GetString(field);
    if (field.IsEmpty())
        value = ' ';
    else
        value = static_cast<char>(VantorText::atoi32(field.GetData()));
    return value;
}

float CommaBlockString::GetFloat(float &value)
{
    double full;
    GetDouble(full);
    value = static_cast<float>(full);
    return value;
}

float CommaBlockString::GetFloat()
{
    float value;
    return GetFloat(value);
}

double CommaBlockString::GetDouble(double &value)
{
    CString field;
    GetString(field);
    value = VantorText::atofC(field.GetData());
    return value;
}

double CommaBlockString::GetDouble()
{
    double value;
    return GetDouble(value);
}

bool CommaBlockString::GetBool(bool &value)
{
    CString field;
    GetString(field);
    value = field.text == QLatin1String("true") || field.text == QLatin1String("TRUE");
    return value;
}

bool CommaBlockString::GetBool()
{
    bool value;
    return GetBool(value);
}

unsigned int CommaBlockString::GetHexDWORD(unsigned int &value)
{
    CString field;
    GetString(field);
    const QString digits = field.text.toUpper();
    quint32 result = 0;
    quint32 weight = 1;
    for (int i = digits.size() - 1; i >= 0; --i) {
        const ushort c = digits.at(i).unicode();
        if (c >= 'A' && c <= 'F')
            result += (c - 55u) * weight;
        else if (c >= '0' && c <= '9')
            result += (c - 48u) * weight;
        else
            continue; // "0x", blanks and separators carry no weight
        weight *= 16;
    }
    value = result;
    return value;
}

unsigned int CommaBlockString::GetHexWORD(unsigned short &value)
{
    unsigned int full;
    GetHexDWORD(full);
    value = static_cast<unsigned short>(full);
    return full;
}

unsigned int CommaBlockString::GetHexBYTE(unsigned char &value)
{
    unsigned int full;
    GetHexDWORD(full);
    value = static_cast<unsigned char>(full);
    return full;
}
