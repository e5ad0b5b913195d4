// SPDX-License-Identifier: MIT
#include "PlantSettings.h"

#include <CXmlEx.h>

#include <QDir>
#include <QDomDocument>
#include <QFile>

#include <cstring>
#include <memory>
#include <vector>

namespace {

/// Builds the settings tree with the library's XML writer; nodes are owned here.
class SettingsWriter
{
public:
    SettingsWriter() { m_xml.Create("PlantMonitor"); }

    TreeXml::CXmlNode *group(const char *name) { return add(m_xml.m_Xml.GetRoot(), name); }
    template<typename T>
    void value(TreeXml::CXmlNode *parent, const char *name, T v)
    {
        add(parent, name)->SetValue(v);
    }
    bool save(const QString &path)
    {
        m_xml.m_Xml.SaveWithFormatted(QFile::encodeName(path).constData());
        return QFile::exists(path);
    }

private:
    TreeXml::CXmlNode *add(TreeXml::CXmlNode *parent, const char *name)
    {
        m_nodes.emplace_back(m_xml.CreateNode(parent, name));
        return m_nodes.back().get();
    }

    TreeXml::CXmlEx m_xml;
    std::vector<std::unique_ptr<TreeXml::CXmlNode>> m_nodes;
};

int childInt(const QDomElement &parent, const char *name, int fallback, bool *ok)
{
    const QDomElement e = parent.firstChildElement(QString::fromLatin1(name));
    if (e.isNull())
        return fallback;
    bool valid = false;
    const int v = e.text().trimmed().toInt(&valid);
    if (!valid)
        *ok = false;
    return valid ? v : fallback;
}

QString childText(const QDomElement &parent, const char *name)
{
    return parent.firstChildElement(QString::fromLatin1(name)).text().trimmed();
}

} // namespace

bool writeDefaultSettings(const QString &path, const QString &folder)
{
    const PlantSettings d;
    SettingsWriter w;
    TreeXml::CXmlNode *link = w.group("Link");
    w.value(link, "Kind", int(CCommData::TcpClient));
    w.value(link, "Address", "127.0.0.1");
    w.value(link, "Port", 0);
    w.value(link, "SerialPort", "/dev/ttyUSB0");
    w.value(link, "BaudRate", d.link.m_CommInfo.BaudRate);
    w.value(link, "DataBits", int(d.link.m_CommInfo.DataBits));
    w.value(link, "StopBits", int(d.link.m_CommInfo.StopBits));
    w.value(link, "Parity", int(d.link.m_CommInfo.Parity));
    w.value(link, "RenewalPeriod", d.link.m_nRenewalPeriod);
    w.value(link, "Unit", d.unit);
    w.value(link, "FirstRegister", d.firstRegister);
    w.value(link, "RegisterCount", d.registerCount);
    TreeXml::CXmlNode *poll = w.group("Poll");
    w.value(poll, "Period", d.pollPeriod);
    w.value(poll, "ReplyTimeout", d.replyTimeout);
    TreeXml::CXmlNode *db = w.group("Database");
    w.value(db, "Kind", 3);
    w.value(db, "Server", "");
    w.value(db, "Port", 0);
    const QString lite = QDir(folder).absoluteFilePath(QStringLiteral("plant.db"));
    w.value(db, "Name", CString(QStringLiteral("DRIVER=SQLite3;Database=") + lite));
    w.value(db, "User", "");
    w.value(db, "Password", "");
    TreeXml::CXmlNode *keep = w.group("Storage");
    w.value(keep, "KeepDays", d.keepDays);
    TreeXml::CXmlNode *sim = w.group("Simulator");
    w.value(sim, "BadCrcEvery", d.simBadCrcEvery);
    w.value(sim, "ShortEvery", d.simShortEvery);
    w.value(sim, "DropEvery", d.simDropEvery);
    return w.save(path);
}

bool readSettings(const QString &path, PlantSettings &s, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read %1").arg(path);
        return false;
    }
    QDomDocument doc;
    QString parseError;
    int line = 0;
    if (!doc.setContent(&file, &parseError, &line)) {
        *error = QStringLiteral("%1:%2: %3").arg(path).arg(line).arg(parseError);
        return false;
    }
    const QDomElement root = doc.documentElement();
    if (root.tagName() != QLatin1String("PlantMonitor")) {
        *error = QStringLiteral("%1: not a plant monitor settings file").arg(path);
        return false;
    }
    bool ok = true;
    const QDomElement link = root.firstChildElement(QStringLiteral("Link"));
    s.link.m_nKind = std::uint8_t(childInt(link, "Kind", s.link.m_nKind, &ok));
    s.link.m_strIPAddr = CString(childText(link, "Address"));
    s.link.m_nPort = std::uint16_t(childInt(link, "Port", 0, &ok));
    const QByteArray serial = QFile::encodeName(childText(link, "SerialPort"));
    std::memset(s.link.m_CommInfo.PortName, 0, sizeof s.link.m_CommInfo.PortName);
    std::strncpy(s.link.m_CommInfo.PortName, serial.constData(),
                 sizeof s.link.m_CommInfo.PortName - 1);
    CommInfo &c = s.link.m_CommInfo;
    c.BaudRate = childInt(link, "BaudRate", c.BaudRate, &ok);
    c.DataBits = std::uint8_t(childInt(link, "DataBits", c.DataBits, &ok));
    c.StopBits = std::uint8_t(childInt(link, "StopBits", c.StopBits, &ok));
    c.Parity = std::uint8_t(childInt(link, "Parity", c.Parity, &ok));
    s.link.m_nRenewalPeriod = childInt(link, "RenewalPeriod", s.link.m_nRenewalPeriod, &ok);
    s.unit = childInt(link, "Unit", s.unit, &ok);
    s.firstRegister = childInt(link, "FirstRegister", s.firstRegister, &ok);
    s.registerCount = childInt(link, "RegisterCount", s.registerCount, &ok);
    const QDomElement poll = root.firstChildElement(QStringLiteral("Poll"));
    s.pollPeriod = childInt(poll, "Period", s.pollPeriod, &ok);
    s.replyTimeout = childInt(poll, "ReplyTimeout", s.replyTimeout, &ok);
    const QDomElement db = root.firstChildElement(QStringLiteral("Database"));
    s.database.nKind = childInt(db, "Kind", 3, &ok);
    s.database.strServer = CString(childText(db, "Server"));
    s.database.bRemote = s.database.strServer.text.isEmpty() ? 0 : 1;
    s.database.nPort = childInt(db, "Port", 0, &ok);
    s.database.strDBName = CString(childText(db, "Name"));
    s.database.strUser = CString(childText(db, "User"));
    s.database.strPassword = CString(childText(db, "Password"));
    s.keepDays =
        childInt(root.firstChildElement(QStringLiteral("Storage")), "KeepDays", s.keepDays, &ok);
    const QDomElement sim = root.firstChildElement(QStringLiteral("Simulator"));
    s.simBadCrcEvery = childInt(sim, "BadCrcEvery", s.simBadCrcEvery, &ok);
    s.simShortEvery = childInt(sim, "ShortEvery", s.simShortEvery, &ok);
    s.simDropEvery = childInt(sim, "DropEvery", s.simDropEvery, &ok);
    // Bounds a Modbus read and a sane poll rhythm allow.
    if (!ok || s.link.m_nKind > CCommData::TcpClient || s.registerCount < 1 ||
        s.registerCount > 125 || s.unit < 1 || s.unit > 247 || s.firstRegister < 0 ||
        s.firstRegister > 65535 - s.registerCount || s.pollPeriod < 1 || s.replyTimeout < 1 ||
        s.keepDays < 0) {
        *error = QStringLiteral("%1: a value is missing or out of range").arg(path);
        return false;
    }
    return true;
}
