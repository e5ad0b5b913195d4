// SPDX-License-Identifier: MIT
// Drawing: raised and sunken boxes, triangles and filled shapes painted with CDrawTools into a
// PNG, and a pen and a brush kept as records in a memory file.
#include "Demo.h"

#include <Vantor.h>

#include <QDir>
#include <QFont>
#include <QImage>
#include <QPainter>

static void label(QPainter &p, int x, int y, const char *text)
{
    QFont font = p.font();
    font.setPixelSize(11);
    p.setFont(font);
    p.setPen(Qt::black);
    p.drawText(QRect(x, y, 240, 16), Qt::AlignLeft | Qt::AlignVCenter, QString::fromLatin1(text));
}

static void paintPanel(QPainter &p)
{
    CDrawTools tools;
    const long face = 0xC8D0D4; // COLORREF: blue 0xC8, green 0xD0, red 0xD4
    const long navy = 0x800000;
    const long black = 0x000000;

    // 3-D boxes, as buttons and input fields are drawn.
    tools.DrawPopBox(&p, 10, 24, 110, 64, face);
    tools.DrawPushBox(&p, 130, 24, 230, 64, face);
    tools.DrawPopBoxSmall(&p, CRect(250, 24, 350, 64), face);
    tools.DrawPushBoxSmall(&p, CRect(370, 24, 470, 64), 0xFFFFFFL);
    label(p, 10, 6, "DrawPopBox");
    label(p, 130, 6, "DrawPushBox");
    label(p, 250, 6, "DrawPopBoxSmall");
    label(p, 370, 6, "DrawPushBoxSmall");

    // Triangles in the four directions, as on spin and scroll buttons.
    label(p, 10, 78, "DrawTriangle, directions 0-3");
    for (int direction = 0; direction < 4; ++direction) {
        const int l = 10 + direction * 40;
        tools.DrawPopBox(&p, l, 96, l + 32, 128, face);
        tools.DrawTriangle(&p, CRect(l + 9, 105, l + 23, 119), direction, black, navy);
    }

    // Filled shapes with a three-pixel outline.
    tools.SetLineThick(3);
    label(p, 180, 78, "DrawRect, hatch 2");
    tools.DrawRect(&p, 180, 98, 270, 128, 0x0000C0, 0x80FFFF, 2);
    label(p, 290, 78, "DrawEllipse");
    tools.DrawEllipse(&p, 290, 98, 360, 128, 0x008000, 0x80FF80);
    label(p, 380, 78, "DrawRoundRect");
    tools.DrawRoundRect(&p, 380, 98, 470, 128, 0x800080, 0xFFC0FF);

    // A dashed trend line and a rubber band.
    tools.SetLineThick(2);
    label(p, 10, 140, "DrawPolyline, DrawLine (dashed)");
    label(p, 300, 140, "DrawRectXor");
    CPoint trend[] = {CPoint(10, 190),  CPoint(60, 170),  CPoint(110, 180),
                      CPoint(160, 160), CPoint(210, 175), CPoint(260, 158)};
    tools.DrawPolyline(&p, trend, 6, 0x0000FF, 1);
    tools.DrawLine(&p, 10, 196, 260, 196, 0x808080, 2);
    tools.DrawRectXor(&p, 300, 158, 470, 196);
}

static int run(DemoContext &ctx)
{
    QImage panel(480, 206, QImage::Format_RGB32);
    panel.fill(QColor(0xF0, 0xF0, 0xF0));
    {
        QPainter p(&panel);
        paintPanel(p);
    }
    const QString path = QDir(ctx.outputDir).filePath(QStringLiteral("drawing-panel.png"));
    if (!panel.save(path)) {
        demoSay(QStringLiteral("could not write %1").arg(path));
        return 1;
    }
    demoSay(QStringLiteral("panel of boxes, triangles and filled shapes: %1").arg(path));

    // Drawing styles travel in files as small fixed records.
    LogPen pen;
    pen.m_nStyle = 2;
    pen.m_nWidth = 3;
    pen.m_Color = 0x0000FF;
    LogBrush brush;
    CFile file;
    file.Open(CString(), 2);
    pen.Write(file);
    brush.Write(file);
    file.Seek(0);
    QByteArray bytes(int(file.Size()), '\0');
    file.Read(bytes.data(), bytes.size());
    demoSay(QStringLiteral("pen and brush records, %1 bytes: %2")
                .arg(bytes.size())
                .arg(QString::fromLatin1(bytes.toHex(' '))));
    return 0;
}

static DemoSection section(80, "Drawing", run);
