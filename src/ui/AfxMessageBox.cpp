// SPDX-License-Identifier: MIT
#include "AfxMessageBox.h"

#include "FileNotice_p.h"
#include "VantorStrings.h"

#include <QMessageBox>

namespace {

// Missing files that CFileEx::CheckExistence is asked to report are shown in a box: installed
// when the library is loaded, so the files classes need nothing from this subsystem.
void showFileNotice(char const *text)
{
    AfxMessageBox(text, MB_OK, 0);
}
[[maybe_unused]] const bool fileNoticeInstalled =
    (VantorPrivate::SetFileNoticeFunction(showFileNotice), true);

} // namespace

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
