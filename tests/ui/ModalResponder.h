#pragma once

// Answers the modal dialogs that a blocking call runs: a timer polls for the active modal
// widget, records what it saw and then acts on it (click a button, close, press Escape).
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QTest>
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
        if (auto *label = w->findChild<QLabel *>(QStringLiteral("labelMessage")))
            message = label->text();
        else if (auto *label = w->findChild<QLabel *>(QStringLiteral("qt_msgbox_label")))
            message = label->text();
        m_action(w);
    }

    Action m_action;
    QTimer m_timer;
    QPointer<QWidget> m_handled;
};
