// SPDX-License-Identifier: MIT
#include "CDrawTools.h"

#include "CBrush.h"
#include "CPen.h"

#include <QPainter>
#include <QPolygon>
#include <QWidget>

namespace {

constexpr unsigned long Black = 0x000000;
constexpr unsigned long White = 0xFFFFFF;
constexpr unsigned long Grey = 0x7F7F7F;

// Qt pen style numbers used by the calls below.
constexpr int NoPen = 0;
constexpr int SolidLine = 1;
constexpr int DashDotDotLine = 5;

/// The rectangle handed to the painter for left, top, right, bottom: corners (l, t) and
/// (r - 1, b - 1), so that a one-pixel outline reaches column r and row b.
QRect handedRect(int l, int t, int r, int b)
{
    return QRect(QPoint(l, t), QPoint(r - 1, b - 1));
}

/// Two COLORREF values name the same colour (the high byte carries no colour).
bool sameColor(long a, long b)
{
    return (static_cast<unsigned long>(a) & 0xFFFFFF) == (static_cast<unsigned long>(b) & 0xFFFFFF);
}

void setPen(QPainter *p, int style, int width, unsigned long color)
{
    CPen pen;
    pen.CreatePen(style, width, color);
    p->setPen(pen);
}

void setSolidBrush(QPainter *p, unsigned long color)
{
    CBrush brush;
    brush.CreateSolidBrush(color);
    p->setBrush(brush);
}

void setNullBrush(QPainter *p)
{
    CBrush brush;
    brush.CreateStockObject(CBrush::NullBrush);
    p->setBrush(brush);
}

/// One-pixel solid line segments in `color`, each from (x1, y1) to (x2, y2).
void strokeLines(QPainter *p, unsigned long color, std::initializer_list<QLine> lines)
{
    setPen(p, SolidLine, 1, color);
    for (const QLine &line : lines)
        p->drawLine(line);
}

/// The black frame on the corners l, t, r, b themselves.
void strokeFrame(QPainter *p, int l, int t, int r, int b)
{
    strokeLines(p, Black,
                {QLine(l, t, r, t), QLine(r, t, r, b), QLine(r, b, l, b), QLine(l, b, l, t)});
}

/**
 * Runs `draw` with a painter opened on `w` for this call only. Qt lets a widget be painted only
 * from its own paint event (where a second painter beside the application's works); anywhere
 * else the call draws nothing, without the warnings an unguarded QPainter would print.
 */
template<typename Draw>
void onWidget(QWidget *w, Draw &&draw)
{
    if (!w || !w->testAttribute(Qt::WA_WState_InPaintEvent) || w->paintingActive())
        return;
    QPainter painter(w);
    if (painter.isActive())
        draw(&painter);
}

} // namespace

CDrawTools::CDrawTools()
    : m_nLineThick(1)
{ }

CDrawTools::~CDrawTools() = default;

void CDrawTools::SetLineThick(int thick)
{
    m_nLineThick = thick;
}

// Lines

void CDrawTools::DrawLine(QPainter *p, int x1, int y1, int x2, int y2, long color, int style)
{
    if (!p)
        return;
    setPen(p, style, m_nLineThick, color);
    p->drawLine(x1, y1, x2, y2);
}

void CDrawTools::DrawLine(QWidget *w, int x1, int y1, int x2, int y2, long color)
{
    onWidget(w, [&](QPainter *p) { DrawLine(p, x1, y1, x2, y2, color, SolidLine); });
}

// Rectangles

void CDrawTools::DrawRect(QPainter *p, int l, int t, int r, int b, long border)
{
    if (!p)
        return;
    setPen(p, SolidLine, m_nLineThick, border);
    setNullBrush(p);
    p->drawRect(handedRect(l, t, r, b));
}

void CDrawTools::DrawRect(QPainter *p, CRect rect, long border)
{
    DrawRect(p, rect.left, rect.top, rect.right, rect.bottom, border);
}

void CDrawTools::DrawRect(QWidget *w, int l, int t, int r, int b, long border)
{
    onWidget(w, [&](QPainter *p) { DrawRect(p, l, t, r, b, border); });
}

void CDrawTools::DrawRect(QWidget *w, CRect rect, long border)
{
    DrawRect(w, rect.left, rect.top, rect.right, rect.bottom, border);
}

void CDrawTools::DrawRect(QPainter *p, int l, int t, int r, int b, long border, long fill,
                          int hatch)
{
    if (!p)
        return;
    CBrush brush;
    if (hatch < 0)
        brush.CreateSolidBrush(fill);
    else
        brush.CreateHatchBrush(hatch, fill);
    p->setBrush(brush);
    if (sameColor(border, fill)) {
        // Without an outline the fill alone must cover l..r and t..b.
        setPen(p, NoPen, 1, border);
        ++r;
        ++b;
    } else {
        setPen(p, SolidLine, m_nLineThick, border);
    }
    p->drawRect(handedRect(l, t, r, b));
}

void CDrawTools::DrawRect(QPainter *p, CRect rect, long border, long fill, int hatch)
{
    DrawRect(p, rect.left, rect.top, rect.right, rect.bottom, border, fill, hatch);
}

void CDrawTools::DrawRect(QWidget *w, int l, int t, int r, int b, long border, long fill, int hatch)
{
    onWidget(w, [&](QPainter *p) { DrawRect(p, l, t, r, b, border, fill, hatch); });
}

void CDrawTools::DrawRect(QWidget *w, CRect rect, long border, long fill, int hatch)
{
    DrawRect(w, rect.left, rect.top, rect.right, rect.bottom, border, fill, hatch);
}

// Ellipses

void CDrawTools::DrawEllipse(QPainter *p, int l, int t, int r, int b, long border)
{
    if (!p)
        return;
    setPen(p, SolidLine, m_nLineThick, border);
    setNullBrush(p);
    p->drawEllipse(handedRect(l, t, r, b));
}

void CDrawTools::DrawEllipse(QPainter *p, CRect rect, long border)
{
    DrawEllipse(p, rect.left, rect.top, rect.right, rect.bottom, border);
}

void CDrawTools::DrawEllipse(QWidget *w, int l, int t, int r, int b, long border)
{
    onWidget(w, [&](QPainter *p) { DrawEllipse(p, l, t, r, b, border); });
}

void CDrawTools::DrawEllipse(QWidget *w, CRect rect, long border)
{
    DrawEllipse(w, rect.left, rect.top, rect.right, rect.bottom, border);
}

void CDrawTools::DrawEllipse(QPainter *p, int l, int t, int r, int b, long border, long fill)
{
    if (!p)
        return;
    setPen(p, SolidLine, m_nLineThick, border);
    setSolidBrush(p, fill);
    p->drawEllipse(handedRect(l, t, r, b));
}

void CDrawTools::DrawEllipse(QPainter *p, CRect rect, long border, long fill)
{
    DrawEllipse(p, rect.left, rect.top, rect.right, rect.bottom, border, fill);
}

void CDrawTools::DrawEllipse(QWidget *w, int l, int t, int r, int b, long border, long fill)
{
    onWidget(w, [&](QPainter *p) { DrawEllipse(p, l, t, r, b, border, fill); });
}

void CDrawTools::DrawEllipse(QWidget *w, CRect rect, long border, long fill)
{
    DrawEllipse(w, rect.left, rect.top, rect.right, rect.bottom, border, fill);
}

// Rounded rectangles

namespace {
void roundRect(QPainter *p, int l, int t, int r, int b)
{
    const int w = r - l;
    const int h = b - t;
    // Roundness in Qt's percent of the half sides, a fifth of the side in pixels: the values
    // the Windows-era callers were tuned to.
    p->drawRoundedRect(QRectF(l, t, w, h), w / 5, h / 5, Qt::RelativeSize);
}
} // namespace

void CDrawTools::DrawRoundRect(QPainter *p, int l, int t, int r, int b, long border)
{
    if (!p)
        return;
    setPen(p, SolidLine, m_nLineThick, border);
    setNullBrush(p);
    roundRect(p, l, t, r, b);
}

void CDrawTools::DrawRoundRect(QPainter *p, CRect rect, long border)
{
    DrawRoundRect(p, rect.left, rect.top, rect.right, rect.bottom, border);
}

void CDrawTools::DrawRoundRect(QWidget *w, int l, int t, int r, int b, long border)
{
    onWidget(w, [&](QPainter *p) { DrawRoundRect(p, l, t, r, b, border); });
}

void CDrawTools::DrawRoundRect(QWidget *w, CRect rect, long border)
{
    DrawRoundRect(w, rect.left, rect.top, rect.right, rect.bottom, border);
}

void CDrawTools::DrawRoundRect(QPainter *p, int l, int t, int r, int b, long border, long fill)
{
    if (!p)
        return;
    setPen(p, SolidLine, m_nLineThick, border);
    setSolidBrush(p, fill);
    roundRect(p, l, t, r, b);
}

void CDrawTools::DrawRoundRect(QPainter *p, CRect rect, long border, long fill)
{
    DrawRoundRect(p, rect.left, rect.top, rect.right, rect.bottom, border, fill);
}

void CDrawTools::DrawRoundRect(QWidget *w, int l, int t, int r, int b, long border, long fill)
{
    onWidget(w, [&](QPainter *p) { DrawRoundRect(p, l, t, r, b, border, fill); });
}

void CDrawTools::DrawRoundRect(QWidget *w, CRect rect, long border, long fill)
{
    DrawRoundRect(w, rect.left, rect.top, rect.right, rect.bottom, border, fill);
}

// Polygons, polylines and triangles

void CDrawTools::DrawPolygon(QPainter *p, CPoint *points, int count, long border, long fill)
{
    if (!p)
        return;
    if (sameColor(border, fill))
        setPen(p, DashDotDotLine, 1, fill);
    else
        setPen(p, SolidLine, m_nLineThick, border);
    setSolidBrush(p, fill);
    if (!points || count < 1)
        return;
    QPolygon polygon(count);
    for (int i = 0; i < count; ++i)
        polygon.setPoint(i, points[i].x, points[i].y);
    p->drawPolygon(polygon, Qt::OddEvenFill);
}

void CDrawTools::DrawPolygon(QWidget *w, CPoint *points, int count, long border, long fill)
{
    onWidget(w, [&](QPainter *p) { DrawPolygon(p, points, count, border, fill); });
}

void CDrawTools::DrawPolyline(QPainter *p, CPoint *points, int count, long color, int style)
{
    if (!p)
        return;
    setPen(p, style, style == SolidLine ? m_nLineThick : 1, color);
    if (!points || count < 1)
        return;
    QPolygon line(count);
    for (int i = 0; i < count; ++i)
        line.setPoint(i, points[i].x, points[i].y);
    p->drawPolyline(line);
}

void CDrawTools::DrawPolyline(QWidget *w, CPoint *points, int count, long color, int style)
{
    onWidget(w, [&](QPainter *p) { DrawPolyline(p, points, count, color, style); });
}

void CDrawTools::DrawTriangle(QPainter *p, CRect rect, int direction, long border, long fill)
{
    const CPoint c = rect.CenterPoint();
    const int l = rect.left;
    const int t = rect.top;
    const int r = rect.right;
    const int b = rect.bottom;
    CPoint points[3];
    switch (direction) {
    case 0: // up
        points[0] = CPoint(c.x + 1, t);
        points[1] = CPoint(l, b);
        points[2] = CPoint(r, b);
        break;
    case 1: // down
        points[0] = CPoint(c.x + 1, b);
        points[1] = CPoint(l, t);
        points[2] = CPoint(r, t);
        break;
    case 2: // left
        points[0] = CPoint(l, c.y + 1);
        points[1] = CPoint(r, t);
        points[2] = CPoint(r, b);
        break;
    case 3: // right
        points[0] = CPoint(r, c.y + 1);
        points[1] = CPoint(l, t);
        points[2] = CPoint(l, b);
        break;
    default: // three times the origin
        break;
    }
    DrawPolygon(p, points, 3, border, fill);
}

void CDrawTools::DrawTriangle(QPainter *p, int l, int t, int r, int b, int direction, long border,
                              long fill)
{
    CRect rect;
    rect.SetRect(l, t, r, b);
    DrawTriangle(p, rect, direction, border, fill);
}

void CDrawTools::DrawTriangle(QWidget *w, CRect rect, int direction, long border, long fill)
{
    onWidget(w, [&](QPainter *p) { DrawTriangle(p, rect, direction, border, fill); });
}

void CDrawTools::DrawTriangle(QWidget *w, int l, int t, int r, int b, int direction, long border,
                              long fill)
{
    onWidget(w, [&](QPainter *p) { DrawTriangle(p, l, t, r, b, direction, border, fill); });
}

// XOR rectangles

void CDrawTools::DrawRectXor(QPainter *p, int l, int t, int r, int b)
{
    if (!p)
        return;
    setPen(p, SolidLine, m_nLineThick, White);
    setNullBrush(p);
    const QPainter::CompositionMode mode = p->compositionMode();
    p->setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    p->drawRect(handedRect(l, t, r, b));
    p->setCompositionMode(mode);
}

void CDrawTools::DrawRectXor(QPainter *p, CRect rect)
{
    DrawRectXor(p, rect.left, rect.top, rect.right, rect.bottom);
}

void CDrawTools::DrawRectXor(QWidget *w, int l, int t, int r, int b)
{
    onWidget(w, [&](QPainter *p) { DrawRectXor(p, l, t, r, b); });
}

void CDrawTools::DrawRectXor(QWidget *w, CRect rect)
{
    DrawRectXor(w, rect.left, rect.top, rect.right, rect.bottom);
}

// Raised and sunken boxes

void CDrawTools::DrawPopBox(QPainter *p, int l, int t, int r, int b, long color)
{
    if (!p)
        return;
    DrawRect(p, l + 1, t + 1, r - 1, b - 1, color, color, -1);
    strokeLines(p, White, {QLine(l + 1, b - 1, l + 1, t + 1), QLine(l + 1, t + 1, r - 1, t + 1)});
    strokeLines(p, Grey, {QLine(r - 1, t + 1, r - 1, b - 1), QLine(r - 1, b - 1, l + 1, b - 1)});
    strokeLines(p, White, {QLine(l + 2, b - 2, l + 2, t + 2), QLine(l + 2, t + 2, r - 2, t + 2)});
    strokeLines(p, Grey, {QLine(r - 2, t + 2, r - 2, b - 2), QLine(r - 2, b - 2, l + 2, b - 2)});
    strokeFrame(p, l, t, r, b);
}

void CDrawTools::DrawPopBox(QPainter *p, CRect rect, long color)
{
    DrawPopBox(p, rect.left, rect.top, rect.right, rect.bottom, color);
}

void CDrawTools::DrawPopBox(QWidget *w, int l, int t, int r, int b, long color)
{
    onWidget(w, [&](QPainter *p) { DrawPopBox(p, l, t, r, b, color); });
}

void CDrawTools::DrawPopBox(QWidget *w, CRect rect, long color)
{
    DrawPopBox(w, rect.left, rect.top, rect.right, rect.bottom, color);
}

void CDrawTools::DrawPushBox(QPainter *p, int l, int t, int r, int b, long color)
{
    if (!p)
        return;
    DrawRect(p, l + 1, t + 1, r - 1, b - 1, color, color, -1);
    strokeLines(p, Grey, {QLine(l, b, l, t), QLine(l, t, r, t)});
    strokeLines(p, White, {QLine(r, t, r, b), QLine(r, b, l, b)});
    strokeLines(p, Grey, {QLine(l + 1, b - 1, l + 1, t + 1), QLine(l + 1, t + 1, r - 1, t + 1)});
    strokeLines(p, White, {QLine(r - 1, t + 1, r - 1, b - 1), QLine(r - 1, b - 1, l + 1, b - 1)});
    // The frame sits two pixels to the lower right and covers the outer white bevel there.
    strokeFrame(p, l + 2, t + 2, r, b);
}

void CDrawTools::DrawPushBox(QPainter *p, CRect rect, long color)
{
    DrawPushBox(p, rect.left, rect.top, rect.right, rect.bottom, color);
}

void CDrawTools::DrawPushBox(QWidget *w, int l, int t, int r, int b, long color)
{
    onWidget(w, [&](QPainter *p) { DrawPushBox(p, l, t, r, b, color); });
}

void CDrawTools::DrawPushBox(QWidget *w, CRect rect, long color)
{
    DrawPushBox(w, rect.left, rect.top, rect.right, rect.bottom, color);
}

void CDrawTools::drawSmallBox(QPainter *p, int l, int t, int r, int b, CBrush &brush, bool raised)
{
    if (!p)
        return;
    p->setBrush(brush);
    p->drawRect(QRect(QPoint(l + 1, t + 1), QPoint(r - 1, b - 1)));
    const unsigned long lit = raised ? White : Grey;
    const unsigned long shaded = raised ? Grey : White;
    strokeLines(p, lit, {QLine(l + 1, b - 1, l + 1, t + 1), QLine(l + 1, t + 1, r - 1, t + 1)});
    strokeLines(p, shaded, {QLine(r - 1, t + 1, r - 1, b - 1), QLine(r - 1, b - 1, l + 1, b - 1)});
    strokeFrame(p, l, t, r, b);
}

void CDrawTools::DrawPopBoxSmall(QPainter *p, int l, int t, int r, int b, CBrush &brush)
{
    drawSmallBox(p, l, t, r, b, brush, true);
}

void CDrawTools::DrawPopBoxSmall(QPainter *p, int l, int t, int r, int b, long color)
{
    CBrush brush;
    brush.CreateSolidBrush(color);
    DrawPopBoxSmall(p, l, t, r, b, brush);
}

void CDrawTools::DrawPopBoxSmall(QPainter *p, CRect rect, CBrush &brush)
{
    DrawPopBoxSmall(p, rect.left, rect.top, rect.right, rect.bottom, brush);
}

void CDrawTools::DrawPopBoxSmall(QPainter *p, CRect rect, long color)
{
    DrawPopBoxSmall(p, rect.left, rect.top, rect.right, rect.bottom, color);
}

void CDrawTools::DrawPopBoxSmall(QWidget *w, int l, int t, int r, int b, CBrush &brush)
{
    onWidget(w, [&](QPainter *p) { DrawPopBoxSmall(p, l, t, r, b, brush); });
}

void CDrawTools::DrawPopBoxSmall(QWidget *w, int l, int t, int r, int b, long color)
{
    onWidget(w, [&](QPainter *p) { DrawPopBoxSmall(p, l, t, r, b, color); });
}

void CDrawTools::DrawPopBoxSmall(QWidget *w, CRect rect, CBrush &brush)
{
    DrawPopBoxSmall(w, rect.left, rect.top, rect.right, rect.bottom, brush);
}

void CDrawTools::DrawPopBoxSmall(QWidget *w, CRect rect, long color)
{
    DrawPopBoxSmall(w, rect.left, rect.top, rect.right, rect.bottom, color);
}

void CDrawTools::DrawPushBoxSmall(QPainter *p, int l, int t, int r, int b, CBrush &brush)
{
    drawSmallBox(p, l, t, r, b, brush, false);
}

void CDrawTools::DrawPushBoxSmall(QPainter *p, int l, int t, int r, int b, long color)
{
    CBrush brush;
    brush.CreateSolidBrush(color);
    DrawPushBoxSmall(p, l, t, r, b, brush);
}

void CDrawTools::DrawPushBoxSmall(QPainter *p, CRect rect, CBrush &brush)
{
    DrawPushBoxSmall(p, rect.left, rect.top, rect.right, rect.bottom, brush);
}

void CDrawTools::DrawPushBoxSmall(QPainter *p, CRect rect, long color)
{
    DrawPushBoxSmall(p, rect.left, rect.top, rect.right, rect.bottom, color);
}

void CDrawTools::DrawPushBoxSmall(QWidget *w, int l, int t, int r, int b, CBrush &brush)
{
    onWidget(w, [&](QPainter *p) { DrawPushBoxSmall(p, l, t, r, b, brush); });
}

void CDrawTools::DrawPushBoxSmall(QWidget *w, int l, int t, int r, int b, long color)
{
    onWidget(w, [&](QPainter *p) { DrawPushBoxSmall(p, l, t, r, b, color); });
}

void CDrawTools::DrawPushBoxSmall(QWidget *w, CRect rect, CBrush &brush)
{
    DrawPushBoxSmall(w, rect.left, rect.top, rect.right, rect.bottom, brush);
}

void CDrawTools::DrawPushBoxSmall(QWidget *w, CRect rect, long color)
{
    DrawPushBoxSmall(w, rect.left, rect.top, rect.right, rect.bottom, color);
}
