// SPDX-License-Identifier: MIT
#include "CString.h"

#include "TextRules_p.h"

#include <cstdarg>
#include <cstring>

CString::CString() = default;

CString::CString(const QString &s)
    : text(s)
{ }

CString::CString(char const *s)
    : text(QString::fromUtf8(s))
{ }

CString::CString(char *s)
    : text(QString::fromUtf8(s))
{ }

CString::CString(unsigned char *s)
    : text(QString::fromUtf8(reinterpret_cast<const char *>(s)))
{ }

CString &CString::operator=(char const *s)
{
    text = QString::fromUtf8(s);
    bytes.clear();
    return *this;
}

void CString::Empty()
{
    *this = "";
}

bool CString::IsEmpty() const
{
    return text.isEmpty();
}

int CString::GetLength(bool inBytes) const
{
    return inBytes ? text.toUtf8().size() : text.size();
}

char CString::GetAt(int i) const
{
    if (i < 0 || i >= text.size())
        return 0;
    const char *data = GetData(false);
    // The UTF-8 form is never shorter than the UTF-16 length, so data[i] is in range.
    return data[i];
}

int CString::Compare(const CString &other) const
{
    return QString::compare(text, other.text, Qt::CaseSensitive);
}

int CString::Find(char ch) const
{
    return Find(ch, 0);
}

int CString::Find(char ch, int start) const
{
    return text.indexOf(QChar::fromLatin1(ch), start, Qt::CaseSensitive);
}

int CString::Find(const QString &sub, int start) const
{
    return text.indexOf(sub, start, Qt::CaseSensitive);
}

int CString::ReverseFind(char ch, int start) const
{
    return text.lastIndexOf(QChar::fromLatin1(ch), start, Qt::CaseSensitive);
}

int CString::ReverseFind(const QString &sub, int start) const
{
    return text.lastIndexOf(sub, start, Qt::CaseSensitive);
}

char *CString::GetData(bool escape) const
{
    bytes = text.toUtf8();
    if (escape) {
        for (char &c : bytes)
            c = VantorText::escapeCellByte(c);
    }
    return bytes.data();
}

char *CString::c_str() const
{
    return GetData(false);
}

CString CString::Left(int n) const
{
    if (n < 0 || n >= text.size())
        return CString(text);
    return CString(text.left(n));
}

CString CString::Right(int n) const
{
    if (n < 0 || n >= text.size())
        return CString(text);
    return CString(text.right(n));
}

CString CString::Mid(int pos, int n) const
{
    return CString(text.mid(pos, n));
}

CString CString::MakeUpper() const
{
    return CString(text.toUpper());
}

CString CString::MakeLower() const
{
    return CString(text.toLower());
}

CString CString::Format(char const *format, ...)
{
    va_list ap;
    va_start(ap, format);
    text = QString::vasprintf(format ? format : "", ap);
    va_end(ap);
    bytes.clear();
    return CString(text);
}

CString CString::Replace(char const *from, char const *to)
{
    const QString f = QString::fromUtf8(from);
    if (!f.isEmpty())
        text.replace(f, QString::fromUtf8(to), Qt::CaseSensitive);
    return CString(text);
}

CString CString::Replace(QChar from, QChar to)
{
    text.replace(from, to, Qt::CaseSensitive);
    return CString(text);
}

CString &CString::Remove(QChar ch)
{
    text.remove(ch, Qt::CaseSensitive);
    return *this;
}

int CString::Delete(int index, int count)
{
    if (index >= 0 && index < text.size() && count > 0)
        text.remove(index, count);
    return 0;
}

int CString::Insert(int index, const CString &s)
{
    if (index < 0)
        return 0;
    if (index > text.size())
        text.append(QString(index - text.size(), QLatin1Char(' ')));
    text.insert(index, s.text);
    return 0;
}

CString &CString::operator+=(const CString &other)
{
    text += other.text;
    return *this;
}

void MakeString(char *dest, char *src, int size, int escape)
{
    if (!dest || size <= 0)
        return;
    if (src) {
        // The source comes over first, as many bytes as fit; the cell is then written over it.
        const size_t len = std::strlen(src);
        std::memcpy(dest, src, len < static_cast<size_t>(size) ? len + 1 : size_t(size));
    }
    VantorText::copyCell(dest, src, size, escape != 0, VantorText::CellSpaces::TrimTextEnd);
}
