// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QByteArray>
#include <QFile>
#include <QString>

/**
 * A delimited text file (settings tables, device address lists, spreadsheet CSV) read whole
 * into memory once and handed out line by line and field by field.
 *
 * OpenFile() decodes the file with the codec of the library's language ("euc-KR" for Korean,
 * "zh-CN" for Chinese, the locale's codec for English) and keeps it as UTF-8 bytes. GetOneLine()
 * then copies one line at a time into the line buffer, skipping comment lines (starting with
 * ';') and section lines (starting with '['), and the getters cut that line into fields.
 *
 * The field grammar is the inverse of the MakeString() writers:
 * - a field ends at the divide char (a comma unless changed) or at the end of the line;
 *   leading spaces and tabs are dropped and the field is trimmed at both ends;
 * - '^' is a line feed and "^^" a carriage return followed by a line feed;
 * - '`' is an escaped comma; "`^" and "``" give '^' and '`';
 * - a double quote reads as a space, and so does '=' directly before one, so a spreadsheet text
 *   cell ="0123" reads as 0123.
 *
 * A table written with the writers reads back cell for cell, except where the file grammar,
 * kept for existing files, cannot tell an escape from the text:
 * - two commas in a row: "a,,b" is written a``b and reads back as a`b;
 * - a comma directly before a line break: ",\n" is written `^ and reads back as ^;
 * - a back-quote or caret already in the text reads back as a comma or a line break;
 * - spaces and tabs at either end of a cell, and double quotes (read as spaces), are lost.
 *
 * Lines are cut silently before the first character that no longer fits in 19,999 bytes, and
 * fields before the first that no longer fits in the caller's buffer size - 1. A character is
 * a valid UTF-8 sequence; any other byte of 0x80 or above leads a two-byte character.
 * The QFile base is not used for reading; the object belongs to one thread.
 */
class VANTOR_EXPORT CTextFile : public QFile
{
public:
    /// Size of the line buffer, terminator included.
    enum { LineBufferSize = 20000 };

    CTextFile();
    /// Stores the message-box switch and, when `name` is not empty, calls OpenFile(name).
    explicit CTextFile(QString name, bool messageBox = true);
    ~CTextFile() override;

    /**
     * Reads the whole file `name` into memory; returns nonzero when it could be opened. A file
     * that cannot be opened changes nothing. The read position is deliberately kept: opening
     * a second file on a used object continues at the old position unless Reset() is called.
     * `unused` is ignored.
     */
    int OpenFile(QString name, bool unused = false);
    /**
     * Takes `count` bytes from `data` as the text instead of a file and starts reading at its
     * first byte. Returns the object's copy of the data. A NUL byte in the data ends it.
     */
    char *Set(char *data, int count);
    /// Reading starts again at the first line.
    void Reset();
    /// Frees the text read. Nothing is removed from disk.
    void DeleteTextFile();
    /// Sets the field delimiter. With a space, a run of spaces counts as one delimiter.
    void SetDivideChar(char divide);
    /// Stored for the application; no operation of this class consults it.
    void SetMessageBoxFlag(bool messageBox);

    /**
     * Reads the next line into the line buffer: 0 for a data line, 1 for a comment or section
     * line (its text is not kept), 2 at the end of the text. A line feed directly after a line
     * end belongs to that line end, deliberately: two line feeds in a row end one line, not a
     * line and an empty one. A comment line at the very end without a line end gives 2.
     */
    int GetOneLine();
    /// Number of data lines (empty lines included) from the read position to the end;
    /// reading then starts again at the first line.
    int GetLineCount();
    /// Number of fields of the next data line (0 when there is none); reading then starts
    /// again at the first line.
    int GetColumnCount();
    /**
     * Number of divide chars in `text` plus 1 (1 for an empty text). A multi-byte character
     * (a Korean syllable is three bytes of UTF-8) is stepped over whole, never past the
     * terminator.
     */
    int GetColumnCount(char *text);
    /**
     * Makes `text` the current line from its first field: `count` bytes of its UTF-8 form,
     * the last of them replaced by the terminator ("abc" with 3 gives "ab"). The count is
     * clamped to the text and its terminator and to the line buffer; 0 or less gives an empty
     * line.
     */
    void SetOneLine(CString text, int count);

    /**
     * Reads the next field of the current line into `buffer` of `size` bytes (see the class
     * grammar); from the first character that does not fit whole in size - 1 bytes on, the
     * field is dropped. Returns 1 when a field was taken, 0 at
     * the end of the line (also for blanks alone after the last delimiter).
     */
    int GetString(char *buffer, int size);
    /// Reads one field and discards it; returns what GetString returned.
    int Skip();
    /// The field's first 9 bytes, as a number (atoi), not as a character.
    int GetChar(char *value);
    /// The field's first 8 bytes through atoi: a 12-digit field gives its first 8 digits.
    int GetInt(int *value);
    /// The field's first 19 bytes through atol.
    int GetLong(long *value);
    /// The field's first 18 bytes through atof.
    int GetFloat(float *value);
    /**
     * A digital input address "WWWB": the first three characters as a decimal word number and
     * the fourth as a hexadecimal bit number (0-9, A-F in upper case; anything else counts 0),
     * giving word × 16 + bit ("123A" gives 1978, "0021" gives 33). A shorter field keeps all
     * its characters as the word and bit 0 ("21" gives 336); an empty field gives 0.
     */
    int GetAddressDI(unsigned int *value);
    /// The rest of the current line from the field position.
    CString GetRemainData();
    /// false: the field position in the current line; true: the read position in the text.
    int GetPos(bool data);

    /// Clears the trailing spaces (and NULs) of `buffer` of `size` bytes; returns 1.
    static int RemoveEndSpace(char *buffer, int size);
    /// Moves the text of `buffer` of `size` bytes to the front over its leading spaces;
    /// returns 1.
    static int RemoveStartSpace(char *buffer, int size);

    /**
     * Writes the 8-bit `source` as one cell into `dest` of `size` bytes: at most size - 1
     * bytes, never half a character, every trailing space cut off. A valid UTF-8 sequence is
     * one character; any other byte of 0x80 or above leads a two-byte character ("a" and the
     * two bytes B0 A1 fit whole in 4 bytes and give "a" alone in 3). With `escape`, a comma becomes
     * '`' and a carriage return or line feed '^'. A '`' or '^' already in the text is
     * deliberately left alone, so it reads back as a comma or a line break.
     */
    static void MakeString(char *dest, char *source, int size, bool escape);
    /**
     * The cell text as above, within `size` bytes; with `quote` it is written as ="text", a
     * cell a spreadsheet keeps as text (leading zeros included).
     */
    static CString MakeString(char *source, int size, bool escape, bool quote);
    /// The whole string as an escaped, quoted cell: "a,b" gives ="a`b".
    static CString MakeString(CString text);

protected:
    /// The field delimiter.
    char m_cDivideChar;
    /// The message-box switch, kept for the application.
    bool m_bMessageBox;
    /// Index of the next character of the current line.
    int m_nPos;
    /// Length of the current line in bytes.
    int m_nLineLength;
    /// The current line, zero-terminated.
    char m_szLine[LineBufferSize];
    /// Index of the next unread byte of the text.
    int m_nDataPos;
    /// Number of bytes of text.
    int m_nDataLength;
    /// The whole text as UTF-8 with a NUL after it.
    QByteArray m_Data;
    /// Allocated size of m_Data.
    int m_nDataSize;

private:
    /// Steps over the divide char that ends a field (over a run of spaces when it is a space)
    /// and gives GetString's result: 1 when a field was taken or a divide char follows.
    int finishField(bool taken);

    /**
     * How many bytes at the start of m_szLine this class may have left nonzero. GetOneLine
     * clears these before it copies the next line, so that everything after the line is zero
     * without clearing the whole buffer for every line. Bytes that a derived class writes into
     * m_szLine beyond the line it sets are its own to clear.
     */
    int m_nLineWritten;
};
