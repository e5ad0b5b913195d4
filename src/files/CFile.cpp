// SPDX-License-Identifier: MIT
#include "CFile.h"

#include <QtEndian>

#include <cstring>

namespace {

// Values go to the file in little-endian order, whatever the host.
template<typename T>
int writeValue(QIODevice *dev, T value)
{
    const T le = qToLittleEndian(value);
    return int(dev->write(reinterpret_cast<const char *>(&le), sizeof(T)));
}

// Reads sizeof(T) bytes over the value's own bytes, so a short read changes only what arrived.
template<typename T>
int readValue(QIODevice *dev, T &value)
{
    T le = qToLittleEndian(value);
    const int n = int(dev->read(reinterpret_cast<char *>(&le), sizeof(T)));
    value = qFromLittleEndian(le);
    return n;
}

template<typename F, typename I>
I floatBits(F value)
{
    static_assert(sizeof(F) == sizeof(I), "same width");
    I bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

template<typename I, typename F>
F floatValue(I bits)
{
    F value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace

CFile::CFile()
    : m_bDiskMode(true)
{
    std::memset(m_cReserved, 0, sizeof m_cReserved);
}

CFile::~CFile()
{
    Close();
}

QIODevice *CFile::device()
{
    if (m_bDiskMode)
        return &m_File;
    return &m_Buffer;
}

BOOL CFile::Open(char *name, unsigned int flags, CFileException *error)
{
    Q_UNUSED(error)
    if (!name || !*name)
        m_bDiskMode = false;
    if (!m_bDiskMode)
        return m_Buffer.open(QIODevice::ReadWrite) ? TRUE : FALSE;
    return openDisk(QString::fromLatin1(name), flags);
}

BOOL CFile::Open(CString name, unsigned int flags, CFileException *error)
{
    if (name.IsEmpty() || !m_bDiskMode)
        return Open(const_cast<char *>(""), flags, error);
    return openDisk(name.text, flags);
}

BOOL CFile::openDisk(const QString &name, unsigned int flags)
{
    m_File.setFileName(name);
    // Only write (bit 0) and read-write (bit 1) count; read-write never truncates.
    const QIODevice::OpenMode mode = (flags & 0x3u) ? QIODevice::ReadWrite : QIODevice::ReadOnly;
    return m_File.open(mode) ? TRUE : FALSE;
}

void CFile::Close()
{
    if (!device()->isOpen())
        return;
    if (m_bDiskMode) {
        m_File.flush();
        m_File.close();
    } else {
        m_Buffer.close();
    }
}

bool CFile::IsOpen()
{
    return device()->isOpen();
}

void CFile::Flush()
{
    if (m_File.isOpen())
        m_File.flush();
}

qint64 CFile::Size()
{
    return device()->size();
}

bool CFile::Seek(int pos)
{
    return device()->seek(pos);
}

qint64 CFile::Pos()
{
    return device()->pos();
}

void CFile::SetLength(int length)
{
    if (m_bDiskMode)
        m_File.resize(length);
}

int CFile::Write(void *data, int count)
{
    if (count < 0 || (!data && count > 0))
        return -1;
    return int(device()->write(static_cast<const char *>(data), count));
}

int CFile::Write(char value)
{
    return writeValue(device(), value);
}

int CFile::Write(unsigned char value)
{
    return writeValue(device(), value);
}

int CFile::Write(bool value)
{
    return writeValue(device(), quint8(value ? 1 : 0));
}

int CFile::Write(short value)
{
    return writeValue(device(), qint16(value));
}

int CFile::Write(unsigned short value)
{
    return writeValue(device(), quint16(value));
}

int CFile::Write(int value)
{
    return writeValue(device(), qint32(value));
}

int CFile::Write(unsigned int value)
{
    return writeValue(device(), quint32(value));
}

int CFile::Write(long value)
{
    return writeValue(device(), qint32(value));
}

int CFile::Write(unsigned long value)
{
    return writeValue(device(), quint32(value));
}

int CFile::Write(float value)
{
    return writeValue(device(), floatBits<float, quint32>(value));
}

int CFile::Write(long long value)
{
    return writeValue(device(), qint64(value));
}

int CFile::Write(unsigned long long value)
{
    return writeValue(device(), quint64(value));
}

int CFile::Write(double value)
{
    return writeValue(device(), floatBits<double, quint64>(value));
}

int CFile::Write(CRect rect)
{
    QIODevice *dev = device();
    writeValue(dev, qint32(rect.left));
    writeValue(dev, qint32(rect.top));
    writeValue(dev, qint32(rect.right));
    writeValue(dev, qint32(rect.bottom));
    return 16;
}

int CFile::Write(CString text)
{
    const QByteArray bytes = text.text.toUtf8();
    writeValue(device(), qint32(bytes.size()));
    return int(device()->write(bytes));
}

int CFile::Write(CString text, int count)
{
    if (count < 0)
        return -1;
    // A count beyond the string's bytes fills the field up with NULs.
    return int(device()->write(text.text.toUtf8().leftJustified(count, '\0', true)));
}

int CFile::Read(void *data, int count)
{
    if (count < 0 || (!data && count > 0))
        return -1;
    return int(device()->read(static_cast<char *>(data), count));
}

int CFile::Read(char &value)
{
    return readValue(device(), value);
}

int CFile::Read(unsigned char &value)
{
    return readValue(device(), value);
}

int CFile::Read(bool &value)
{
    quint8 byte = value ? 1 : 0;
    const int n = readValue(device(), byte);
    value = byte != 0;
    return n;
}

int CFile::Read(short &value)
{
    return readValue(device(), value);
}

int CFile::Read(unsigned short &value)
{
    return readValue(device(), value);
}

int CFile::Read(int &value)
{
    return readValue(device(), value);
}

int CFile::Read(unsigned int &value)
{
    return readValue(device(), value);
}

int CFile::Read(long &value)
{
    qint32 word = qint32(value);
    const int n = readValue(device(), word);
    if (n > 0)
        value = word;
    return n;
}

int CFile::Read(unsigned long &value)
{
    quint32 word = quint32(value);
    const int n = readValue(device(), word);
    if (n > 0)
        value = word;
    return n;
}

int CFile::Read(float &value)
{
    quint32 bits = floatBits<float, quint32>(value);
    const int n = readValue(device(), bits);
    value = floatValue<quint32, float>(bits);
    return n;
}

int CFile::Read(long long &value)
{
    return readValue(device(), value);
}

int CFile::Read(unsigned long long &value)
{
    return readValue(device(), value);
}

int CFile::Read(double &value)
{
    quint64 bits = floatBits<double, quint64>(value);
    const int n = readValue(device(), bits);
    value = floatValue<quint64, double>(bits);
    return n;
}

int CFile::Read(CRect &rect)
{
    QIODevice *dev = device();
    qint32 edges[4] = {rect.left, rect.top, rect.right, rect.bottom};
    for (qint32 &edge : edges)
        readValue(dev, edge);
    rect.left = edges[0];
    rect.top = edges[1];
    rect.right = edges[2];
    rect.bottom = edges[3];
    return 16;
}

int CFile::Read(CString &text)
{
    QIODevice *dev = device();
    qint32 length = 0;
    readValue(dev, length);

    // A corrupt length must not make us allocate gigabytes: never ask for more than the
    // device can still deliver.
    const qint64 left = qMax<qint64>(0, dev->size() - dev->pos());
    const int wanted = int(qBound(qint64(0), qint64(length), left));
    QByteArray bytes(wanted, '\0');
    if (wanted > 0)
        dev->read(bytes.data(), wanted);
    // An embedded NUL ends the text.
    text.text =
        QString::fromUtf8(bytes.constData(), int(qstrnlen(bytes.constData(), uint(wanted))));
    return length;
}

void InitFileHeader(FILEHEADER *header)
{
    if (!header)
        return;
    std::memset(header, 0, sizeof *header);
    std::memcpy(header->version, "1.0", 4);
}

void DeleteFileW(char const *name)
{
    if (name && *name)
        QFile::remove(QString::fromLatin1(name));
}

void DeleteFileW(CString name)
{
    if (!name.IsEmpty())
        QFile::remove(name.text);
}
