// SPDX-License-Identifier: MIT
#include "Console.h"

#include "PrintMessage.h"

#include <QKeyEvent>
#include <QScrollBar>

Console::Console(QWidget *parent)
    : QPlainTextEdit(parent)
{
    document()->setMaximumBlockCount(100000);
    QPalette p = palette();
    p.setColor(QPalette::Base, Qt::black);
    p.setColor(QPalette::Text, Qt::green);
    setPalette(p);
}

void Console::putData(const QByteArray &data)
{
    if (data.isEmpty())
        return;
    const int end = data.indexOf('\0');
    insertPlainText(QString::fromLatin1(data.constData(), end < 0 ? data.size() : end));
    QScrollBar *bar = verticalScrollBar();
    bar->setValue(bar->maximum());
}

void Console::setLocalEchoEnabled(bool set)
{
    m_bLocalEchoEnabled = set;
}

void Console::OnCopy()
{
    selectAll();
    copy();
    moveCursor(QTextCursor::End);
}

void Console::keyPressEvent(QKeyEvent *e)
{
    switch (e->key()) {
    case Qt::Key_Backspace:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        break;
    case Qt::Key_C:
        OnCopy();
        break;
    case Qt::Key_S:
        if (e->modifiers() & Qt::ControlModifier)
            ExternPrintMessageFlag = 0;
        break;
    default:
        ExternPrintMessageFlag = 1;
        if (m_bLocalEchoEnabled)
            QPlainTextEdit::keyPressEvent(e);
        emit getData(e->text().toLocal8Bit());
    }
}

void Console::mousePressEvent(QMouseEvent *e)
{
    Q_UNUSED(e)
    setFocus();
}

void Console::mouseDoubleClickEvent(QMouseEvent *e)
{
    Q_UNUSED(e)
}

void Console::contextMenuEvent(QContextMenuEvent *e)
{
    Q_UNUSED(e)
}
