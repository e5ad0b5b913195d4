// SPDX-License-Identifier: MIT
#include "WidgetTool.h"

#include "CDrawTools_p.h"
#include "DialogEx.h"
#include "QtCompat_p.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>

#ifdef Q_OS_WIN
#include <QLibrary>
#endif

#include <algorithm>

namespace {

QRect primaryScreenRect(bool available)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return QRect();
    return available ? screen->availableGeometry() : screen->geometry();
}

// Changing window flags hides a widget, so the flag is only touched when it is set, and a
// widget that was visible is shown again.
void clearContextHelpFlag(QWidget *w)
{
    const Qt::WindowFlags flags = w->windowFlags();
    if (!(flags & Qt::WindowContextHelpButtonHint))
        return;
    const bool wasVisible = w->isVisible();
    w->setWindowFlags(flags & ~Qt::WindowContextHelpButtonHint);
    if (wasVisible)
        w->show();
}

void fixAndCenter(QWidget *w, const QSize &size)
{
    w->setFixedSize(size);
    clearContextHelpFlag(w);
    WidgetTool::CenterWidget(w);
}

} // namespace

void WidgetTool::FixSizeAndHideHelp(QWidget *w, bool resizable)
{
    if (!w)
        return;
    if (resizable)
        ExecuteResizableDlg(nullptr, w);
    else
        fixAndCenter(w, w->size());
}

void WidgetTool::ExecuteResizableDlg(QWidget *parent, QWidget *w)
{
    if (!w)
        return;
    const QSize size = w->size();
    const QRect screen = primaryScreenRect(false);
    // Without a screen there is nothing to fit into: treat the widget as fitting.
    if (screen.isEmpty() || (size.width() <= screen.width() && size.height() <= screen.height())) {
        fixAndCenter(w, size);
        return;
    }

    auto *wrapper = new DialogEx(parent);
    wrapper->setAttribute(Qt::WA_DeleteOnClose);
    wrapper->m_pChildWindow = w;
    wrapper->resize(std::min(size.width(), screen.width()),
                    std::min(size.height(), screen.height() - 24));
    wrapper->setWindowTitle(w->windowTitle());
    wrapper->setWindowFlags(w->windowFlags() & ~Qt::WindowContextHelpButtonHint);

    auto *area = new QScrollArea;
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setWidgetResizable(true);
    area->setWidget(w);
    if (!w->layout())
        new QHBoxLayout(w);
    auto *layout = new QHBoxLayout(wrapper);
    layout->addWidget(area);

    wrapper->show();
    fixAndCenter(w, size);
}

void WidgetTool::CenterWidget(QWidget *w)
{
    const QRect available = primaryScreenRect(true);
    if (!w || available.isEmpty())
        return;
    w->setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, w->size(), available));
}

void WidgetTool::SetFixedSize(QWidget *w, bool fixed)
{
    if (!w)
        return;
    if (fixed) {
        w->setFixedSize(w->size());
    } else {
        w->setMinimumSize(0, 0);
        w->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    }
}

void WidgetTool::SetButtonColor(QPushButton *b, unsigned long color)
{
    if (!b)
        return;
    b->setFlat(true);
    QPalette palette = b->palette();
    palette.setColor(QPalette::Button, VantorDraw::colorFromRef(color));
    b->setPalette(palette);
    b->setAutoFillBackground(true);
    b->update();
}

void WidgetTool::ExecuteShow(QWidget *w)
{
    if (!w)
        return;
    w->showNormal();
    w->raise();
    w->activateWindow();
    w->setWindowFlags(w->windowFlags() & Qt::WindowStaysOnTopHint);
    w->setWindowFlags(w->windowFlags() & ~Qt::WindowStaysOnTopHint);
    w->show();
}

void WidgetTool::EnableHighDpiScaling()
{
#ifdef Q_OS_WIN
    QLibrary user32(QStringLiteral("user32.dll"));
    using SetProcessDPIAwareFn = int(__stdcall *)();
    if (auto fn = reinterpret_cast<SetProcessDPIAwareFn>(user32.resolve("SetProcessDPIAware")))
        fn();
#endif
    // There is no process-wide DPI declaration elsewhere: Qt's own scaling does the work.
    VantorCompat::enableHighDpiScaling();
}
