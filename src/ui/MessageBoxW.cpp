// SPDX-License-Identifier: MIT
#include "MessageBoxW.h"

#include "AskBoxDlg.h"
#include "MessageBoxDlg.h"

void MessageBoxW::Show(QString text)
{
    MessageBoxDlg dialog;
    dialog.setModal(true);
    dialog.SetMessage(text);
    dialog.exec();
}

bool MessageBoxW::Ask(QString text)
{
    AskBoxDlg dialog;
    dialog.setModal(true);
    dialog.SetMessage(text);
    return dialog.exec() == QDialog::Accepted;
}

int MessageBoxW(HWND hwnd, const char *text, const char *caption, unsigned int type)
{
    Q_UNUSED(hwnd);
    Q_UNUSED(caption);
    switch (type) {
    case MB_OK:
        MessageBoxW::Show(QString::fromUtf8(text));
        return IDOK;
    case MB_YESNO:
        return MessageBoxW::Ask(QString::fromUtf8(text)) ? IDYES : IDNO;
    default:
        return IDOK;
    }
}
