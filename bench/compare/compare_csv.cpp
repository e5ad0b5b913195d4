// SPDX-License-Identifier: MIT
// Reading a 50 MB table of 8 comma-separated fields, field by field: CTextFile (load, then
// GetOneLine and GetString) against QTextStream::readLineInto + QString::split, and against a
// plain std::string_view splitter over the file read whole. Every side sums the fields' lengths
// and a hash of their bytes; the three sums must agree.
#include "Compare.h"

#include <CTextFile.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string_view>

namespace {

struct Sum
{
    std::uint64_t length = 0, hash = 1469598103934665603ull, fields = 0;
    void add(const char *p, size_t n)
    {
        length += n;
        ++fields;
        for (size_t i = 0; i < n; ++i)
            hash = (hash ^ static_cast<unsigned char>(p[i])) * 1099511628211ull;
    }
    bool operator==(const Sum &o) const
    {
        return length == o.length && hash == o.hash && fields == o.fields;
    }
};

QByteArray makeTable(qint64 bytes)
{
    QByteArray t;
    t.reserve(int(bytes + 256));
    std::uint32_t x = 12345;
    char line[256];
    for (int row = 0; t.size() < bytes; ++row) {
        x = x * 1103515245u + 12345u;
        const int n = std::snprintf(
            line, sizeof line, "%d,PT-%04u,%u.%02u,%u,2026/11/%02d 10:%02d:%02d,alarm-%u,%u,OK\r\n",
            row, x % 10000, x % 500, x % 100, x % 65536, 1 + row % 28, row % 60, (row / 60) % 60,
            x % 7, x % 1000003);
        t.append(line, n);
    }
    return t;
}

} // namespace

int main()
{
    QTemporaryDir tmp;
    if (!tmp.isValid())
        return 1;
    const QString path = tmp.filePath(QStringLiteral("table.csv"));
    const QByteArray table = makeTable(50 * 1000 * 1000);
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(table) != table.size())
            return 1;
    }
    const double mb = double(table.size()) / 1e6;

    Sum vantor, qt, view;
    const double tv = sidebyside::best(3, [&] {
        vantor = Sum();
        CTextFile file;
        file.OpenFile(path);
        char field[256];
        while (file.GetOneLine() == 0)
            while (file.GetString(field, int(sizeof field)) == 1)
                vantor.add(field, std::strlen(field));
    });
    const double tq = sidebyside::best(3, [&] {
        qt = Sum();
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        QTextStream in(&f);
        QString line;
        while (in.readLineInto(&line)) {
            if (line.endsWith(QLatin1Char('\r')))
                line.chop(1);
            for (const QString &cell : line.split(QLatin1Char(','))) {
                const QByteArray b = cell.toUtf8();
                qt.add(b.constData(), size_t(b.size()));
            }
        }
    });
    const double ts = sidebyside::best(3, [&] {
        view = Sum();
        std::ifstream in(path.toStdString(), std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        const std::string text = all.str();
        std::string_view rest(text);
        while (!rest.empty()) {
            size_t end = rest.find('\n');
            std::string_view line = rest.substr(0, end);
            rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
            if (!line.empty() && line.back() == '\r')
                line.remove_suffix(1);
            for (;;) {
                const size_t comma = line.find(',');
                view.add(line.data(), std::min(comma, line.size()));
                if (comma == std::string_view::npos)
                    break;
                line.remove_prefix(comma + 1);
            }
        }
    });
    const bool ok = vantor == qt && vantor == view && vantor.fields > 0;
    sidebyside::row("CTextFile, 50 MB 8-field table", mb / tv, "QTextStream + split", mb / tq,
                    "MB/s", ok);
    sidebyside::row("CTextFile, 50 MB 8-field table", mb / tv, "string_view splitter", mb / ts,
                    "MB/s", ok);
    return 0;
}
