// SPDX-License-Identifier: MIT
#include "FitScreen.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

#include <algorithm>

int FitScreen::m_nScreenWidth = 0;
int FitScreen::m_nScreenHeight = 0;

// Every layout the scaling applies to was designed for a screen this wide.
static constexpr double kDesignWidth = 800.0;

void FitScreen::Init()
{
    if (m_nScreenWidth != 0 || m_nScreenHeight != 0)
        return;
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect r = screen->geometry();
    m_nScreenWidth = r.right() - r.left() + 1;
    m_nScreenHeight = r.bottom() - r.top() + 1;
}

void FitScreen::ModifyPos(QWidget *w, int width, int height)
{
    Init();
    if (!w)
        return;
    const int sw = width != 0 ? width : m_nScreenWidth;
    const int sh = height != 0 ? height : m_nScreenHeight;
    const double f = sw / kDesignWidth;
    int x = int(w->x() * f);
    int y = int(w->y() * f);
    const int cx = int(w->width() * f);
    const int cy = int(w->height() * f);
    if (x + cx > sw)
        x = sw - cx - 10;
    if (y + cy > sh)
        y = sh - cy - 10;
    w->move(x, y);
    w->resize(cx, cy);
}

void FitScreen::ModifyFontSize(QLabel *label)
{
    Init();
    if (!label)
        return;
    QFont font = label->font();
    const int points = font.pointSize() * m_nScreenWidth / int(kDesignWidth);
    // A pixel-sized font (point size -1) or a size that scales to nothing is left alone.
    if (font.pointSize() <= 0 || points <= 0)
        return;
    font.setPointSize(points);
    label->setFont(font);
}

void FitScreen::FullScreen(QWidget *w)
{
    Init();
    if (!w)
        return;
    w->move(0, 0);
    w->resize(m_nScreenWidth, m_nScreenHeight);
}

void FitScreen::CenterWindow(QWidget *w)
{
    Init();
    if (!w)
        return;
    w->move(std::max((m_nScreenWidth - w->width()) / 2, 0),
            std::max((m_nScreenHeight - w->height()) / 2, 0));
}

void FitScreen::MoveWindow(QWidget *w, int x, int y, int cx, int cy)
{
    Init();
    if (!w)
        return;
    w->move(x, y);
    w->resize(cx, cy);
}

void FitScreen::Topmost(QWidget *w, bool on)
{
    Init();
    if (!w)
        return;
    const Qt::WindowFlags bits = Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint;
    w->setWindowFlags(on ? w->windowFlags() | bits : w->windowFlags() ^ bits);
    w->show();
}

void FitScreen::SetScaledImage(QLabel *label, QPixmap *pixmap)
{
    Init();
    if (!label || !pixmap || pixmap->isNull())
        return;
    label->setPixmap(pixmap->scaled(label->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void FitScreen::SetScaledImage(QLabel *label, QString file)
{
    QPixmap pixmap(file);
    SetScaledImage(label, &pixmap);
}
