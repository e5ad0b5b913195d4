// SPDX-License-Identifier: MIT
#include "AfxMessageBox.h"

#include "VantorStrings.h"

#include <QMessageBox>

int AfxMessageBox(const char *text, unsigned int type, unsigned int helpId)
{
    Q_UNUSED(helpId);
    // The type is compared whole: a known code with any flag added is not a known code.
    if (type != MB_OK && type != MB_YESNO && type != MB_ABORTRETRYIGNORE)
        return IDOK;

    const QString title = GetAppName();
    const QString message = QString::fromLatin1(text);
    switch (type) {
    case MB_OK:
        QMessageBox::about(nullptr, title, message);
        return IDOK;
    case MB_YESNO:
        return QMessageBox::question(nullptr, title, message, QMessageBox::Yes | QMessageBox::No) ==
                QMessageBox::Yes
            ? IDYES
            : IDNO;
    default:
        switch (
            QMessageBox::question(nullptr, title, message,
                                  QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore)) {
        case QMessageBox::Ignore:
            return IDIGNORE;
        case QMessageBox::Retry:
            return IDRETRY;
        default:
            return IDABORT;
        }
    }
}

int AfxMessageBox(CString text, unsigned int type, unsigned int helpId)
{
    return AfxMessageBox(text.GetData(), type, helpId);
}
