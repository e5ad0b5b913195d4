// SPDX-License-Identifier: MIT
#include "CSerialComm.h"

#include "PrintMessage.h"
#include "VantorStrings.h"

#include <QElapsedTimer>
#include <QSerialPort>

#include <cstring>
#include <ctime>

namespace {

QSerialPort::StopBits stopBits(std::uint8_t code)
{
    switch (code) {
    case 2:
        return QSerialPort::OneAndHalfStop;
    case 3:
        return QSerialPort::TwoStop;
    default:
        return QSerialPort::OneStop;
    }
}

QSerialPort::Parity parity(std::uint8_t code)
{
    switch (code) {
    case 1:
        return QSerialPort::OddParity;
    case 2:
        return QSerialPort::EvenParity;
    case 3:
        return QSerialPort::MarkParity;
    case 4:
        return QSerialPort::SpaceParity;
    default:
        return QSerialPort::NoParity;
    }
}

QSerialPort::FlowControl flowControl(std::uint8_t code)
{
    switch (code) {
    case 1:
        return QSerialPort::HardwareControl;
    case 2:
        return QSerialPort::SoftwareControl;
    default:
        return QSerialPort::NoFlowControl;
    }
}

QSerialPort::DataBits dataBits(std::uint8_t bits)
{
    return bits >= 5 && bits <= 8 ? QSerialPort::DataBits(bits) : QSerialPort::Data8;
}

} // namespace

CSerialComm::CSerialComm()
    : m_pPort(nullptr)
    , m_nMessageBoxFlag(0)
{ }

CSerialComm::~CSerialComm()
{
    DeleteComm(1);
}

int CSerialComm::CreateComm(CommInfo &info, bool message)
{
    if (info.StopBits == 0)
        info.StopBits = 1;
    const QString name = CSerialInfo::PortName(info);
    if (!m_pPort)
        m_pPort = new QSerialPort;
    if (m_pPort->isOpen())
        m_pPort->close();
    m_pPort->setPortName(name);
    m_pPort->setBaudRate(info.BaudRate, QSerialPort::AllDirections);
    m_pPort->setDataBits(dataBits(info.DataBits));
    m_pPort->setParity(parity(info.Parity));
    m_pPort->setStopBits(stopBits(info.StopBits));
    m_pPort->setFlowControl(flowControl(info.FlowControl));
    const bool ok = !name.isEmpty() && m_pPort->open(QIODevice::ReadWrite);
    if (message)
        PrintMessage(ok ? "Serial port open OK : %s\r\n" : "Serial port open error : %s\r\n",
                     name.toUtf8().constData());
    return ok ? 1 : 0;
}

bool CSerialComm::IsConnected()
{
    return m_pPort && m_pPort->isOpen();
}

bool CSerialComm::waitForData()
{
    if (!IsConnected())
        return false;
    return m_pPort->bytesAvailable() > 0 || m_pPort->waitForReadyRead(1);
}

int CSerialComm::ReadData(char *buffer, int size)
{
    if (!buffer || size <= 0)
        return 0;
    if (m_ReceiveBuffer.isEmpty()) {
        if (!waitForData())
            return 0;
        m_ReceiveBuffer.append(m_pPort->readAll());
    }
    const int count = qMin(size, m_ReceiveBuffer.size());
    std::memcpy(buffer, m_ReceiveBuffer.constData(), size_t(count));
    m_ReceiveBuffer.remove(0, count);
    return count;
}

int CSerialComm::ReadByte(unsigned char &byte)
{
    if (!waitForData())
        return 0;
    char c = 0;
    if (m_pPort->read(&c, 1) != 1)
        return 0;
    byte = static_cast<unsigned char>(c);
    return 1;
}

int CSerialComm::ReadData(char *buffer, int size, int timeOut)
{
    if (!buffer || size <= 0)
        return 0;
    int count = 0;
    std::time_t start = std::time(nullptr);
    for (;;) {
        const std::time_t now = std::time(nullptr);
        if (now < start)
            start = now;
        if (now >= start + timeOut)
            break;
        unsigned char byte = 0;
        if (ReadByte(byte) == 1) {
            buffer[count++] = char(byte);
            if (count >= size)
                break;
        } else {
            Sleep(1);
        }
    }
    return count;
}

int CSerialComm::WriteData(char const *data, int length)
{
    if (!IsConnected() || !data || length < 0)
        return -1;
    const qint64 written = m_pPort->write(data, length);
    // Without an event loop the bytes leave only through a blocking wait; bounded here.
    QElapsedTimer timer;
    timer.start();
    while (m_pPort->bytesToWrite() > 0 && !timer.hasExpired(3000))
        if (!m_pPort->waitForBytesWritten(int(qMax<qint64>(1, 3000 - timer.elapsed()))))
            break;
    return int(written);
}

int CSerialComm::WriteByte(unsigned char byte)
{
    const char c = char(byte);
    return WriteData(&c, 1);
}

void CSerialComm::DeleteComm(int)
{
    if (!m_pPort)
        return;
    m_pPort->close();
    delete m_pPort;
    m_pPort = nullptr;
}

void CSerialComm::ClearComm() { }

void CSerialComm::SetMessageBoxFlag(int flag)
{
    m_nMessageBoxFlag = flag;
}

int CSerialComm::GetBaudRatePos(int baudRate)
{
    static const int rates[] = {110,   300,   1200,   2400,   4800,   9600,  19200,
                                38400, 57600, 115200, 230400, 460800, 921600};
    for (int i = 0; i < int(sizeof rates / sizeof rates[0]); ++i)
        if (rates[i] == baudRate)
            return i;
    return 5;
}

int CSerialComm::GetDataBitPos(int dataBits)
{
    return dataBits == 7 ? 1 : 0;
}

int CSerialComm::GetStopBitPos(int stopBits)
{
    return stopBits == 2 ? 1 : 0;
}
