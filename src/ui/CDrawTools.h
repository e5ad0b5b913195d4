// SPDX-License-Identifier: MIT
#pragma once

#include "CPoint.h"
#include "CRect.h"
#include "vantor_export.h"

class CBrush;
class QPainter;
class QWidget;

/**
 * GDI-style drawing calls on a QPainter: lines, rectangles, ellipses, rounded rectangles,
 * polygons, triangles, XOR rubber-band rectangles and raised or sunken 3-D boxes.
 *
 * Colours are COLORREF values, 0x00BBGGRR: red is the low byte. Rectangles are given as left,
 * top, right, bottom; the painter is handed the rectangle with corners (left, top) and
 * (right - 1, bottom - 1), so a one-pixel outline covers columns left to right and rows top to
 * bottom. Every call sets its own pen and brush on the painter, draws, and leaves them set.
 *
 * Each shape also takes a CRect, whose left, top, right and bottom are used as given, and a
 * QWidget instead of a painter. The QWidget forms open a painter on the widget for the one
 * call, so they belong in the widget's paintEvent, as on Windows: a rubber band drawn from
 * mouse handlers is drawn by calling update() there and painting in paintEvent. They may be
 * mixed with a painter the paint event holds itself. Outside a paint event they quietly draw
 * nothing.
 */
class VANTOR_EXPORT CDrawTools
{
public:
    /// Line thickness 1.
    CDrawTools();
    virtual ~CDrawTools();

    /// The pen width of outlines and solid lines drawn from now on.
    void SetLineThick(int thick);

    /// The line from (x1, y1) to (x2, y2), both ends included, in Qt pen style `style` (1 is
    /// solid) with the line thickness. The brush is left as it is.
    void DrawLine(QPainter *p, int x1, int y1, int x2, int y2, long color, int style = 1);
    /// A solid line.
    void DrawLine(QWidget *w, int x1, int y1, int x2, int y2, long color);

    /// An outline in `border`, not filled.
    ///@{
    void DrawRect(QPainter *p, int l, int t, int r, int b, long border);
    void DrawRect(QPainter *p, CRect rect, long border);
    void DrawRect(QWidget *w, int l, int t, int r, int b, long border);
    void DrawRect(QWidget *w, CRect rect, long border);
    ///@}
    /**
     * A filled rectangle: solid `fill` for a negative `hatch`, otherwise a hatch brush (solid,
     * or nothing for hatch 5). When `border` equals `fill` no outline is drawn and the fill is
     * grown by one pixel to the right and bottom, so it covers exactly the pixels an outlined
     * rectangle would.
     */
    ///@{
    void DrawRect(QPainter *p, int l, int t, int r, int b, long border, long fill, int hatch = -1);
    void DrawRect(QPainter *p, CRect rect, long border, long fill, int hatch = -1);
    void DrawRect(QWidget *w, int l, int t, int r, int b, long border, long fill, int hatch = -1);
    void DrawRect(QWidget *w, CRect rect, long border, long fill, int hatch = -1);
    ///@}

    /// The ellipse inscribed in the rectangle, outlined in `border`.
    ///@{
    void DrawEllipse(QPainter *p, int l, int t, int r, int b, long border);
    void DrawEllipse(QPainter *p, CRect rect, long border);
    void DrawEllipse(QWidget *w, int l, int t, int r, int b, long border);
    void DrawEllipse(QWidget *w, CRect rect, long border);
    ///@}
    /// The ellipse filled with solid `fill`.
    ///@{
    void DrawEllipse(QPainter *p, int l, int t, int r, int b, long border, long fill);
    void DrawEllipse(QPainter *p, CRect rect, long border, long fill);
    void DrawEllipse(QWidget *w, int l, int t, int r, int b, long border, long fill);
    void DrawEllipse(QWidget *w, CRect rect, long border, long fill);
    ///@}

    /**
     * A rounded rectangle at (l, t) of width r - l and height b - t. The corner roundness is
     * a fifth of the width and of the height, taken as Qt's percentages of the half sides:
     * wide boxes get rounder corners, on purpose.
     */
    ///@{
    void DrawRoundRect(QPainter *p, int l, int t, int r, int b, long border);
    void DrawRoundRect(QPainter *p, CRect rect, long border);
    void DrawRoundRect(QWidget *w, int l, int t, int r, int b, long border);
    void DrawRoundRect(QWidget *w, CRect rect, long border);
    ///@}
    /// The rounded rectangle filled with solid `fill`.
    ///@{
    void DrawRoundRect(QPainter *p, int l, int t, int r, int b, long border, long fill);
    void DrawRoundRect(QPainter *p, CRect rect, long border, long fill);
    void DrawRoundRect(QWidget *w, int l, int t, int r, int b, long border, long fill);
    void DrawRoundRect(QWidget *w, CRect rect, long border, long fill);
    ///@}

    /**
     * The polygon through `count` points, filled with solid `fill` by the odd-even rule. When
     * `border` equals `fill` the outline is drawn one pixel wide in Qt pen style 5
     * (dash-dot-dot) in that colour; otherwise solid in `border` with the line thickness.
     */
    ///@{
    void DrawPolygon(QPainter *p, CPoint *points, int count, long border, long fill);
    void DrawPolygon(QWidget *w, CPoint *points, int count, long border, long fill);
    ///@}

    /// The open line through `count` points (nothing below 1) in Qt pen style `style`: solid
    /// lines take the line thickness, other styles are one pixel wide. The brush is unchanged.
    ///@{
    void DrawPolyline(QPainter *p, CPoint *points, int count, long color, int style = 1);
    void DrawPolyline(QWidget *w, CPoint *points, int count, long color, int style = 1);
    ///@}

    /**
     * A triangle in the rectangle, drawn as DrawPolygon. `direction` 0 points up, 1 down,
     * 2 left and 3 right; the apex sits one pixel right of (or below) the rectangle's centre
     * point and the base lies on the opposite edge. Any other direction draws a degenerate
     * polygon at the origin.
     */
    ///@{
    void DrawTriangle(QPainter *p, CRect rect, int direction, long border, long fill);
    void DrawTriangle(QPainter *p, int l, int t, int r, int b, int direction, long border,
                      long fill);
    void DrawTriangle(QWidget *w, CRect rect, int direction, long border, long fill);
    void DrawTriangle(QWidget *w, int l, int t, int r, int b, int direction, long border,
                      long fill);
    ///@}

    /**
     * A white outline XOR-ed onto the picture with the line thickness, so drawing it a second
     * time restores what was there: the rubber band. The painter form puts the painter's
     * composition mode back afterwards.
     */
    ///@{
    void DrawRectXor(QWidget *w, int l, int t, int r, int b);
    void DrawRectXor(QWidget *w, CRect rect);
    void DrawRectXor(QPainter *p, int l, int t, int r, int b);
    void DrawRectXor(QPainter *p, CRect rect);
    ///@}

    /**
     * A raised box with a two-pixel bevel; l, t, r, b are its inclusive corners. The face
     * (l + 1, t + 1) to (r - 1, b - 1) is filled with `color`, two white lines run along the
     * top and left inside it and two grey (0x7F7F7F) lines along the bottom and right, and a
     * black frame surrounds it all. Bevel lines are one pixel wide whatever the line thickness.
     */
    ///@{
    void DrawPopBox(QPainter *p, int l, int t, int r, int b, long color);
    void DrawPopBox(QPainter *p, CRect rect, long color);
    void DrawPopBox(QWidget *w, int l, int t, int r, int b, long color);
    void DrawPopBox(QWidget *w, CRect rect, long color);
    ///@}
    /**
     * A sunken box: the same face, a grey outer bevel along the left and top and a white one
     * along the right and bottom, and inside them a grey and a white line the same way round.
     * The black frame is deliberately shifted two pixels to the lower right, from (l + 2, t + 2)
     * to (r, b), so it covers the outer white bevel there: that is the sunken look.
     */
    ///@{
    void DrawPushBox(QPainter *p, int l, int t, int r, int b, long color);
    void DrawPushBox(QPainter *p, CRect rect, long color);
    void DrawPushBox(QWidget *w, int l, int t, int r, int b, long color);
    void DrawPushBox(QWidget *w, CRect rect, long color);
    ///@}

    /**
     * A raised box with a one-pixel bevel. The face, corners (l + 1, t + 1) and (r - 1, b - 1)
     * handed to the painter as they are, is drawn with `brush` and the pen the painter already
     * holds; then a white bevel along the left and top, a grey one along the right and bottom
     * and the black frame on l, t, r, b. The `color` forms fill with a solid brush of `color`.
     */
    ///@{
    void DrawPopBoxSmall(QPainter *p, int l, int t, int r, int b, CBrush &brush);
    void DrawPopBoxSmall(QPainter *p, int l, int t, int r, int b, long color);
    void DrawPopBoxSmall(QPainter *p, CRect rect, CBrush &brush);
    void DrawPopBoxSmall(QPainter *p, CRect rect, long color);
    void DrawPopBoxSmall(QWidget *w, int l, int t, int r, int b, CBrush &brush);
    void DrawPopBoxSmall(QWidget *w, int l, int t, int r, int b, long color);
    void DrawPopBoxSmall(QWidget *w, CRect rect, CBrush &brush);
    void DrawPopBoxSmall(QWidget *w, CRect rect, long color);
    ///@}
    /// DrawPopBoxSmall with the white and grey bevels exchanged: a sunken box.
    ///@{
    void DrawPushBoxSmall(QPainter *p, int l, int t, int r, int b, CBrush &brush);
    void DrawPushBoxSmall(QPainter *p, int l, int t, int r, int b, long color);
    void DrawPushBoxSmall(QPainter *p, CRect rect, CBrush &brush);
    void DrawPushBoxSmall(QPainter *p, CRect rect, long color);
    void DrawPushBoxSmall(QWidget *w, int l, int t, int r, int b, CBrush &brush);
    void DrawPushBoxSmall(QWidget *w, int l, int t, int r, int b, long color);
    void DrawPushBoxSmall(QWidget *w, CRect rect, CBrush &brush);
    void DrawPushBoxSmall(QWidget *w, CRect rect, long color);
    ///@}

    /// The line thickness in pixels.
    int m_nLineThick;

private:
    void drawSmallBox(QPainter *p, int l, int t, int r, int b, CBrush &brush, bool raised);
};
