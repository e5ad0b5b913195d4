// SPDX-License-Identifier: MIT
#include "CTextFile.h"

#include "CTextFile_p.h"
#include "TextRules_p.h"
#include "TextStreamEx.h"
#include "TextStreamEx_p.h"

#include <QBuffer>
#include <QTextCodec>

#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

std::atomic<bool> shortcuts {true};

/// The default size of the blocks in which a file is read: small enough to stay in the cache
/// while it is checked and its carriage returns are removed.
constexpr int defaultReadBlock = 256 * 1024;
std::atomic<int> readBlock {defaultReadBlock};

bool useShortcuts()
{
    return shortcuts.load(std::memory_order_relaxed);
}

/// Whether every byte of `data` is below 0x80.
bool isAscii(const char *data, qsizetype size)
{
    quint64 any = 0;
    qsizetype i = 0;
    for (; i + 8 <= size; i += 8) {
        quint64 word;
        std::memcpy(&word, data + i, sizeof word);
        any |= word;
    }
    for (; i < size; ++i)
        any |= static_cast<unsigned char>(data[i]);
    return (any & 0x8080808080808080ull) == 0;
}

/**
 * Whether `codec` turns ASCII bytes into the same characters, one by one, whatever comes
 * before or after them: then decoding ASCII text and writing it as UTF-8 gives the bytes back.
 * Only the stateless codecs that the language or the locale can choose qualify; the bytes
 * 0 to 127 are checked as well.
 */
bool keepsAscii(QTextCodec *codec)
{
    if (!codec)
        return false;
    const int mib = codec->mibEnum();
    const QByteArray name = codec->name().toLower();
    const bool known = mib == 106                                // UTF-8
        || mib == 3                                              // US-ASCII
        || (mib >= 4 && mib <= 13)                               // ISO-8859-1 to -10
        || (mib >= 109 && mib <= 112)                            // ISO-8859-13 to -16
        || mib == 38 || name == "windows-949" || name == "cp949" // EUC-KR and its superset
        || mib == 113 || mib == 114 || mib == 2025               // GBK, GB18030, GB2312
        || mib == 18 || mib == 2026                              // EUC-JP, Big5
        || (mib >= 2250 && mib <= 2258)                          // windows-1250 to -1258
        || mib == 2084 || mib == 2088;                           // KOI8-R, KOI8-U
    if (!known)
        return false;
    char probe[128];
    for (int i = 0; i < 128; ++i)
        probe[i] = static_cast<char>(i);
    return codec->toUnicode(probe, sizeof probe) == QLatin1String(probe, sizeof probe);
}

/// Removes every carriage return from the `size` bytes at `begin`, as the text stream does in
/// text mode; returns the number of bytes left.
qint64 removeCarriageReturns(char *begin, qint64 size)
{
    char *const end = begin + size;
    char *out = static_cast<char *>(std::memchr(begin, '\r', static_cast<size_t>(size)));
    if (!out)
        return size;
    for (const char *in = out; in < end;) {
        const char *cr = static_cast<const char *>(std::memchr(in, '\r', size_t(end - in)));
        const char *stop = cr ? cr : end;
        std::memmove(out, in, static_cast<size_t>(stop - in));
        out += stop - in;
        in = stop + 1;
    }
    return out - begin;
}

/**
 * Reads the whole of `file` into `text` block by block, removing carriage returns as it goes,
 * while every byte is below 0x80. Returns false at the first block with a byte of 0x80 or
 * above: then `text` holds the file's own bytes from its start.
 */
bool readAsciiText(QFile &file, QByteArray &text)
{
    const int block = readBlock.load(std::memory_order_relaxed);
    if (file.isSequential() || file.size() > INT_MAX - block) {
        text = file.readAll();
        if (!isAscii(text.constData(), text.size()))
            return false;
        text.truncate(static_cast<int>(removeCarriageReturns(text.data(), text.size())));
        return true;
    }
    // Each block is read where the text so far ends and checked while it is in the cache.
    text.resize(static_cast<int>(file.size()) + block);
    qint64 length = 0;
    for (;;) {
        if (text.size() - length < block)
            text.resize(static_cast<int>(qMin<qint64>(length + 2 * qint64(block), INT_MAX)));
        const qint64 n = file.read(text.data() + length, block);
        if (n <= 0)
            break;
        if (!isAscii(text.constData() + length, n)) {
            file.seek(0);
            text = file.readAll();
            return false;
        }
        length += removeCarriageReturns(text.data() + length, n);
    }
    text.truncate(static_cast<int>(length));
    return true;
}

/// The first carriage return, line feed or NUL in [p, end), or `end`.
const char *findLineEnd(const char *p, const char *end)
{
    // Eight bytes at a time while none of them is one of the three.
    constexpr quint64 ones = 0x0101010101010101ull;
    constexpr quint64 highs = 0x8080808080808080ull;
    const auto hasZero = [](quint64 x) { return (x - ones) & ~x & highs; };
    while (end - p >= 8) {
        quint64 word;
        std::memcpy(&word, p, sizeof word);
        if (hasZero(word) | hasZero(word ^ (ones * '\r')) | hasZero(word ^ (ones * '\n')))
            break;
        p += 8;
    }
    while (p < end && *p != '\r' && *p != '\n' && *p != 0)
        ++p;
    return p;
}

/// The bytes that the field grammar translates: such a field is read character by character.
struct FieldEscapes
{
    bool table[256] = {};
    constexpr FieldEscapes()
    {
        table[static_cast<unsigned char>('^')] = true;
        table[static_cast<unsigned char>('`')] = true;
        table[static_cast<unsigned char>('=')] = true;
        table[static_cast<unsigned char>('"')] = true;
    }
};
constexpr FieldEscapes fieldEscapes;

/// Steps over one line end (a carriage return or a line feed) at `pos`, and over one line feed
/// that follows it.
void skipLineEnd(const char *data, int end, int &pos)
{
    ++pos;
    if (pos < end && data[pos] == '\n')
        ++pos;
}

} // namespace

CTextFile::CTextFile()
    : CTextFile(QString(), true)
{ }

CTextFile::CTextFile(QString name, bool messageBox)
    : m_cDivideChar(',')
    , m_bMessageBox(messageBox)
    , m_nPos(0)
    , m_nLineLength(0)
    , m_szLine {}
    , m_nDataPos(0)
    , m_nDataLength(0)
    , m_nDataSize(0)
    , m_nLineWritten(0)
{
    if (!name.isEmpty())
        OpenFile(name);
}

CTextFile::~CTextFile() = default;

int CTextFile::OpenFile(QString name, bool)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    // The file's own bytes: the text stream below translates the line ends itself.
    file.setTextModeEnabled(false);
    QByteArray bytes;
    QBuffer device(&bytes);
    TextStreamEx stream(&device, true);
    // Decoding ASCII text and writing it back as UTF-8 gives the same bytes, without the
    // carriage returns that the stream drops in text mode.
    const bool tryPlain = useShortcuts() && keepsAscii(VantorPrivate::textStreamCodec(true));
    if (!tryPlain)
        bytes = file.readAll();
    if (!tryPlain || !readAsciiText(file, bytes)) {
        device.open(QIODevice::ReadOnly | QIODevice::Text);
        const QByteArray text = stream.readAll().toUtf8();
        device.close();
        bytes = text;
    }
    file.close();

    m_nDataLength = bytes.size();
    bytes.append('\0');
    m_Data = bytes;
    m_nDataSize = m_Data.size();
    // m_nDataPos is kept on purpose: see the header.
    return 1;
}

char *CTextFile::Set(char *data, int count)
{
    if (!data || count < 0)
        count = 0;
    if (count > INT_MAX - 100)
        count = INT_MAX - 100;
    if (m_nDataSize < count + 1) {
        // Copy before the old array goes: `data` may point into it.
        QByteArray grown(count + 100, '\0');
        if (count > 0)
            std::memcpy(grown.data(), data, static_cast<size_t>(count));
        m_Data = grown;
        m_nDataSize = count + 100;
    } else if (count > 0) {
        std::memmove(m_Data.data(), data, static_cast<size_t>(count));
    }
    m_Data.data()[count] = 0;
    m_nDataLength = count;
    m_nDataPos = 0;
    return m_Data.data();
}

void CTextFile::Reset()
{
    m_nPos = 0;
    m_nDataPos = 0;
}

void CTextFile::DeleteTextFile()
{
    m_Data = QByteArray();
    m_nDataPos = 0;
    m_nDataSize = 0;
    m_nDataLength = 0;
}

void CTextFile::SetDivideChar(char divide)
{
    m_cDivideChar = divide;
}

void CTextFile::SetMessageBoxFlag(bool messageBox)
{
    m_bMessageBox = messageBox;
}

int CTextFile::GetOneLine()
{
    const char *data = m_Data.constData();
    const int end = qMin(m_nDataLength, m_Data.size());
    if (m_Data.isEmpty() || m_nDataPos >= end)
        return 2;

    // Everything after the line is zero; only what was written can be nonzero.
    std::memset(m_szLine, 0, static_cast<size_t>(m_nLineWritten));
    m_nLineWritten = 0;
    m_nPos = 0;
    m_nLineLength = 0;

    char c = data[m_nDataPos];
    if (c == '\r' || c == '\n') {
        skipLineEnd(data, end, m_nDataPos);
        return 0;
    }
    if (c == 0) // a NUL byte ends the text
        return 2;

    const bool comment = c == ';' || c == '[';
    const int stop = static_cast<int>(findLineEnd(data + m_nDataPos, data + end) - data);
    int length = 0;
    // A line ends before a carriage return, a line feed or a NUL; when no character of it can
    // reach beyond the buffer's 19,999 bytes, it is copied in one piece.
    if (!comment && stop - m_nDataPos + VantorText::characterReach('\n') <= LineBufferSize - 1 &&
        useShortcuts()) {
        length = stop - m_nDataPos;
        std::memcpy(m_szLine, data + m_nDataPos, static_cast<size_t>(length));
    } else if (!comment) {
        int characterEnd = 0; // where the character being copied ends
        for (int pos = m_nDataPos; pos < stop; ++pos) {
            // An over-long line is cut before the first character that does not fit whole.
            if (pos >= characterEnd) {
                characterEnd = pos + VantorText::characterLength(data + pos);
                if (length + (characterEnd - pos) > LineBufferSize - 1)
                    break;
            }
            m_szLine[length++] = data[pos];
        }
    }
    m_nDataPos = stop;
    m_nLineLength = length;
    m_nLineWritten = length;
    if (stop < end && (data[stop] == '\r' || data[stop] == '\n')) {
        skipLineEnd(data, end, m_nDataPos);
        return comment ? 1 : 0;
    }
    // The text ended without a line end, at its end or at a NUL byte.
    return comment || length == 0 ? 2 : 0;
}

int CTextFile::GetLineCount()
{
    int count = 0;
    int kind;
    while ((kind = GetOneLine()) != 2) {
        if (kind == 0)
            ++count;
    }
    m_nDataPos = 0;
    return count;
}

int CTextFile::GetColumnCount()
{
    int kind;
    do {
        kind = GetOneLine();
    } while (kind == 1);
    const int count = kind == 0 ? GetColumnCount(m_szLine) : 0;
    m_nDataPos = 0;
    return count;
}

int CTextFile::GetColumnCount(char *text)
{
    if (!text)
        return 1;
    int count = 1;
    int i = 0;
    while (text[i]) {
        // A multi-byte character never holds a divide char; one cut short ends at the NUL.
        const int n = VantorText::characterLength(text + i);
        if (text[i] == m_cDivideChar)
            ++count;
        for (int k = 0; k < n && text[i]; ++k)
            ++i;
    }
    return count;
}

void CTextFile::SetOneLine(CString text, int count)
{
    m_nPos = 0;
    if (count <= 0) {
        m_szLine[0] = 0;
        m_nLineLength = 0;
        return;
    }
    const QByteArray bytes = text.text.toUtf8();
    // Nothing is read beyond the text's own terminator or written beyond the line buffer.
    const int n = qMin(qMin(count, bytes.size() + 1), int(LineBufferSize));
    std::memcpy(m_szLine, bytes.constData(), static_cast<size_t>(n));
    m_szLine[n - 1] = 0;
    m_nLineWritten = qMax(m_nLineWritten, n);
    m_nLineLength = static_cast<int>(std::strlen(m_szLine));
}

int CTextFile::GetString(char *buffer, int size)
{
    if (!buffer || size <= 0) {
        char scratch;
        return GetString(&scratch, 1);
    }
    const int length = m_nLineLength;
    if (m_nPos >= length) {
        std::memset(buffer, 0, static_cast<size_t>(size));
        return 0;
    }

    const char divide = m_cDivideChar;
    // A field without the bytes that the grammar translates is copied as it is when no
    // character of it can reach size - 1.
    int start = m_nPos;
    while (start < length && m_szLine[start] != divide &&
           (m_szLine[start] == ' ' || m_szLine[start] == '\t'))
        ++start;
    int stop = start;
    bool escapes = false;
    for (char c; stop < length && (c = m_szLine[stop]) != divide; ++stop)
        escapes |= fieldEscapes.table[static_cast<unsigned char>(c)];
    // After the field comes the divide char or the line's terminator.
    const int reach = VantorText::characterReach(m_szLine[stop]);
    if (!escapes && stop - start + reach <= size - 1 && useShortcuts()) {
        int out = stop - start;
        while (out > 0 && m_szLine[start + out - 1] == ' ')
            --out;
        std::memcpy(buffer, m_szLine + start, static_cast<size_t>(out));
        std::memset(buffer + out, 0, static_cast<size_t>(size - out));
        m_nPos = stop;
        return finishField(stop > start);
    }

    std::memset(buffer, ' ', static_cast<size_t>(size));
    int out = 0;
    bool taken = false;
    int characterEnd = 0; // where the character being copied ends
    bool full = false;
    while (m_nPos < length && m_szLine[m_nPos] != divide) {
        char c = m_szLine[m_nPos];
        if (!taken && (c == ' ' || c == '\t')) {
            ++m_nPos;
            continue;
        }
        taken = true;
        if (m_nPos >= characterEnd) {
            characterEnd = m_nPos + VantorText::characterLength(m_szLine + m_nPos);
            // An over-long field is cut before the first character that does not fit whole.
            full = full || out + (characterEnd - m_nPos) > size - 1;
        }
        if (full) {
            ++m_nPos;
            continue;
        }
        const char next = m_nPos + 1 < length ? m_szLine[m_nPos + 1] : 0;
        switch (c) {
        case '^':
            // "^^" is CR and then LF: the second caret is read on its own.
            c = next == '^' ? '\r' : '\n';
            break;
        case '`':
            if ((next == '^' || next == '`') && next != divide) {
                c = next;
                ++m_nPos;
            } else {
                c = ',';
            }
            break;
        case '=':
            if (next == '"')
                c = ' ';
            break;
        case '"':
            c = ' ';
            break;
        default:
            break;
        }
        buffer[out++] = c;
        ++m_nPos;
    }

    buffer[out] = 0;
    RemoveEndSpace(buffer, size);
    RemoveStartSpace(buffer, size);
    return finishField(taken);
}

int CTextFile::finishField(bool taken)
{
    const bool atDivide = m_nPos < m_nLineLength;
    if (atDivide) {
        ++m_nPos;
        if (m_cDivideChar == ' ') {
            while (m_nPos < m_nLineLength && m_szLine[m_nPos] == ' ')
                ++m_nPos;
        }
    }
    return atDivide || taken ? 1 : 0;
}

int CTextFile::Skip()
{
    char scratch[2];
    return GetString(scratch, sizeof scratch);
}

int CTextFile::GetChar(char *value)
{
    char field[10];
    const int result = GetString(field, sizeof field);
    if (value)
        *value = static_cast<char>(VantorText::atoi32(field));
    return result;
}

int CTextFile::GetInt(int *value)
{
    char field[9];
    const int result = GetString(field, sizeof field);
    if (value)
        *value = VantorText::atoi32(field);
    return result;
}

int CTextFile::GetLong(long *value)
{
    char field[20];
    const int result = GetString(field, sizeof field);
    if (value)
        *value = std::atol(field);
    return result;
}

int CTextFile::GetFloat(float *value)
{
    char field[19];
    const int result = GetString(field, sizeof field);
    if (value)
        *value = static_cast<float>(VantorText::atofC(field));
    return result;
}

int CTextFile::GetAddressDI(unsigned int *value)
{
    char field[9];
    const int result = GetString(field, sizeof field);
    if (!value)
        return result;
    if (field[0] == 0) {
        *value = 0;
        return result;
    }
    const char bitChar = field[3];
    unsigned int bit = 0;
    if (bitChar >= '0' && bitChar <= '9')
        bit = static_cast<unsigned int>(bitChar - '0');
    else if (bitChar >= 'A' && bitChar <= 'F')
        bit = static_cast<unsigned int>(bitChar - 'A' + 10);
    field[3] = 0;
    *value = static_cast<unsigned int>(VantorText::atoi32(field)) * 16u + bit;
    return result;
}

CString CTextFile::GetRemainData()
{
    const int from = qBound(0, m_nPos, m_nLineLength);
    return CString(QString::fromUtf8(m_szLine + from, m_nLineLength - from));
}

namespace VantorPrivate {

void setTextFileShortcuts(bool on)
{
    shortcuts.store(on, std::memory_order_relaxed);
}

void setTextFileReadBlock(int bytes)
{
    readBlock.store(bytes > 0 ? bytes : defaultReadBlock, std::memory_order_relaxed);
}

} // namespace VantorPrivate

int CTextFile::GetPos(bool data)
{
    return data ? m_nDataPos : m_nPos;
}

int CTextFile::RemoveEndSpace(char *buffer, int size)
{
    if (!buffer)
        return 1;
    for (int i = size - 1; i >= 0; --i) {
        if (buffer[i] != ' ' && buffer[i] != 0)
            break;
        buffer[i] = 0;
    }
    return 1;
}

int CTextFile::RemoveStartSpace(char *buffer, int size)
{
    if (!buffer || size <= 0)
        return 1;
    int lead = 0;
    while (lead < size && buffer[lead] == ' ')
        ++lead;
    if (lead > 0) {
        std::memmove(buffer, buffer + lead, static_cast<size_t>(size - lead));
        std::memset(buffer + size - lead, 0, static_cast<size_t>(lead));
    }
    return 1;
}

void CTextFile::MakeString(char *dest, char *source, int size, bool escape)
{
    VantorText::copyCell(dest, source, size, escape, VantorText::CellSpaces::TrimResult);
}

CString CTextFile::MakeString(char *source, int size, bool escape, bool quote)
{
    CString cell;
    if (source && size > 0) {
        // The working buffer is never larger than the text itself.
        const size_t length = std::strlen(source);
        const int n = length + 1 < static_cast<size_t>(size) ? static_cast<int>(length + 1) : size;
        QByteArray work(n, '\0');
        MakeString(work.data(), source, n, escape);
        cell.text = QString::fromUtf8(work.constData());
    }
    if (quote)
        cell.text = QLatin1String("=\"") + cell.text + QLatin1Char('"');
    return cell;
}

CString CTextFile::MakeString(CString text)
{
    // The byte length: a cell of Korean text is written whole.
    const int size = text.GetLength(true) + 1;
    return MakeString(text.GetData(), size, true, true);
}
