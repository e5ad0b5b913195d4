// SPDX-License-Identifier: MIT
#pragma once

// Answers the modal dialogs that a blocking call runs: a timer polls for the active modal
// widget, records what it saw and then acts on it (click a button, close, press Escape).
#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>

#include <functional>

class ModalResponder : public QObject
{
public:
    using Action = std::function<void(QWidget *)>;

    explicit ModalResponder(Action action)
        : m_action(std::move(action))
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalResponder::poll);
        m_timer.start(10);
    }

    int shown = 0;
    QString className;
    QString title;
    QString message;

private:
    void poll()
    {
        QWidget *w = QApplication::activeModalWidget();
        if (!w || w == m_handled)
            return;
        m_handled = w;
        ++shown;
        className = QString::fromLatin1(w->metaObject()->className());
        title = w->windowTitle();
        const QRegularExpression labels(QStringLiteral("^(labelMessage|qt_msgbox_label)$"));
        for (QLabel *label : w->findChildren<QLabel *>(labels))
            message = label->text();
        m_action(w);
    }

    Action m_action;
    QTimer m_timer;
    QPointer<QWidget> m_handled;
};
