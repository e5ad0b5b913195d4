// SPDX-License-Identifier: MIT
// Files: a day's readings as CSV in the day's dated folder, read back field by field, and a
// small XML settings file.
#include "Demo.h"

#include <Vantor.h>

#include <QDate>
#include <QFile>

static int run(DemoContext &ctx)
{
    // Today's folder in the dated store under the output folder: <root>yyyy/mm/dd/.
    CFileEx store;
    store.m_strDateRoot = CString(ctx.outputDir + QLatin1Char('/'));
    const QDate today = QDate::currentDate();
    CString folder;
    folder.Format("%s%04d/%02d/%02d/", store.m_strDateRoot.GetData(), today.year(), today.month(),
                  today.day());
    store.MakePath(folder.text.toLatin1().constData());
    const QString csvPath = folder.text + QStringLiteral("readings.csv");

    // Write the readings; text cells go through MakeString, which escapes commas and line
    // breaks and quotes the cell so that a spreadsheet keeps "0007" as text.
    struct Reading
    {
        const char *time;
        const char *tag;
        double value;
        const char *note;
    };
    const Reading readings[] = {{"08:00", "0007", 12.5, "start"},
                                {"12:00", "0007", 14.25, "수온, 정상"},
                                {"16:00", "0012", 13.0, "two\r\nlines"}};
    {
        QFile file(csvPath);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
            demoSay(QStringLiteral("cannot write %1").arg(csvPath));
            return 1;
        }
        TextStreamEx out(&file); // the language's encoding, as CTextFile reads it back
        out << "; readings of " << today.toString(Qt::ISODate) << "\n[Readings]\n";
        for (const Reading &r : readings) {
            out << r.time << ',' << CTextFile::MakeString(CString(r.tag)).text << ',' << r.value
                << ',' << CTextFile::MakeString(CString(r.note)).text << "\r\n";
        }
    }
    demoSay(QStringLiteral("wrote %1").arg(csvPath));

    // Read them back field by field.
    CTextFile csv(csvPath);
    demoSay(QStringLiteral("%1 data lines of %2 columns")
                .arg(csv.GetLineCount())
                .arg(csv.GetColumnCount()));
    int kind;
    while ((kind = csv.GetOneLine()) != 2) {
        if (kind == 1)
            continue; // comment or section line
        char time[8], tag[8], note[64];
        float value = 0;
        csv.GetString(time, sizeof time);
        csv.GetString(tag, sizeof tag);
        csv.GetFloat(&value);
        csv.GetString(note, sizeof note);
        demoSay(QStringLiteral("  %1  tag %2  %3  \"%4\"")
                    .arg(QString::fromUtf8(time), QString::fromUtf8(tag))
                    .arg(double(value), 0, 'f', 2)
                    .arg(QString::fromUtf8(note).replace(QStringLiteral("\r\n"),
                                                         QStringLiteral("\\r\\n"))));
    }

    // A settings line read with the typed getters.
    CommaBlockString line;
    line.Set(CString("10, 20, 3.5, true, 0x1F"));
    const int a = line.GetInt(), b = line.GetInt();
    const double c = line.GetDouble();
    const bool on = line.GetBool();
    unsigned int mask = 0;
    line.GetHexDWORD(mask);
    demoSay(QStringLiteral("settings line: %1 %2 %3 %4 mask %5")
                .arg(a)
                .arg(b)
                .arg(c)
                .arg(on ? QStringLiteral("on") : QStringLiteral("off"))
                .arg(mask));

    // The settings as XML, tab-indented UTF-8.
    TreeXml::CXmlEx xml;
    xml.Create("Settings");
    TreeXml::CXmlNode *root = xml.m_Xml.GetRoot();
    TreeXml::CXmlNode *dataFolder = xml.CreateNode(root, "DataFolder");
    dataFolder->SetValue(store.m_strDateRoot);
    TreeXml::CXmlNode *keep = xml.CreateNode(root, "KeepDays");
    keep->SetValue(store.m_nKeepDays);
    TreeXml::CXmlNode *interval = xml.CreateNode(root, "PollSeconds");
    interval->SetValue(2);
    const QString xmlPath = ctx.outputDir + QStringLiteral("/settings.xml");
    xml.m_Xml.SaveWithFormatted(xmlPath.toLatin1().constData());
    delete dataFolder;
    delete keep;
    delete interval;
    demoSay(QStringLiteral("saved %1 (%2 bytes)").arg(xmlPath).arg(QFile(xmlPath).size()));
    return 0;
}

static DemoSection section(50, "Files, text fields and XML", run);
