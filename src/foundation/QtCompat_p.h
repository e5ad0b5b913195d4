// SPDX-License-Identifier: MIT
#pragma once

// The places where Qt 5.15 and Qt 6 differ by more than a spelling. The library builds from the
// same sources on both and behaves the same on both: same file bytes, same texts, same values.
// Everything here keeps the Qt 5 behaviour, which ported programs were written against.

#include <QByteArray>
#include <QCoreApplication>
#include <QTextStream>
#include <QVariant>
#include <QtGlobal>

class QSqlRecord;
class QTextCodec;

namespace VantorCompat {

/// Makes `stream` read and write UTF-8, whatever the locale.
inline void setUtf8(QTextStream &stream)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    stream.setEncoding(QStringConverter::Utf8);
#else
    stream.setCodec("UTF-8");
#endif
}

/**
 * Makes `stream` read and write in `codec` (a null codec leaves the stream as it is). Qt 6's
 * QTextStream knows only the Unicode encodings and Latin-1, so there the stream is put on a
 * private transcoding device in front of its own device: the stream itself works in UTF-8 and
 * the transcoder turns that into `codec` and back, statefully, so that a character split
 * between two reads or writes stays whole. As on Qt 5, a file that starts with a Unicode byte
 * order mark is read in that encoding instead. Call releaseCodec() before the stream dies.
 */
void setCodec(QTextStream &stream, QTextCodec *codec);

/// Flushes `stream` and lets go of what setCodec() put in front of its device (nothing on Qt 5).
void releaseCodec(QTextStream &stream);

/// The 16-bit CRC of ISO 3309 (X.25) over `data`, as qChecksum computes it.
inline quint16 checksumIso3309(const QByteArray &data)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return qChecksum(QByteArrayView(data), Qt::ChecksumIso3309);
#else
    return qChecksum(data.constData(), uint(data.size()), Qt::ChecksumIso3309);
#endif
}

/// Qt 5's opt-in to high-DPI scaling; Qt 6 always scales, so there it is nothing.
inline void enableHighDpiScaling()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
#endif
}

/**
 * A value from a SQL result row as Qt 5's drivers gave it, from the value Qt's driver gave and
 * the type its record gives the column (from sqlColumnType()).
 * Qt 6's ODBC driver hands a SQL NULL over as an invalid value, where Qt 5 gave a null value of
 * the column's type, and a single-precision column as text with the column typed float, where
 * Qt 5 gave a double. Rows keep Qt 5's values, so that they compare, print and convert as before.
 */
QVariant sqlValue(const QVariant &value, int columnType);

/// The type that sqlValue() wants for column `column` of `record`.
int sqlColumnType(const QSqlRecord &record, int column);

} // namespace VantorCompat
