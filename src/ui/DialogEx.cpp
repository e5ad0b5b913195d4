// SPDX-License-Identifier: MIT
#include "DialogEx.h"

#include <QCloseEvent>
#include <QKeyEvent>

DialogEx::DialogEx(QWidget *parent)
    : QDialog(parent)
    , m_pParent(parent)
    , m_bBlockEscape(true)
{ }

DialogEx::~DialogEx()
{
    delete m_pChildWindow.data();
}

void DialogEx::closeEvent(QCloseEvent *event)
{
    if (m_pChildWindow) {
        QWidget *child = m_pChildWindow.data();
        m_pChildWindow = nullptr;
        child->close();
        delete child;
    }
    QDialog::closeEvent(event);
}

void DialogEx::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_bBlockEscape) {
        event->ignore();
        return;
    }
    QDialog::keyPressEvent(event);
}

void DialogEx::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_bBlockEscape) {
        event->ignore();
        return;
    }
    QDialog::keyReleaseEvent(event);
}
