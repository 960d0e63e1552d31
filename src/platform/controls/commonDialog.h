// A file dialog as a control: properties that are set up, a show verb, and the chosen name.
#pragma once

#include <QString>

namespace veltrona {

class CommonDialog {
public:
    bool CancelError = false;
    QString DefaultExt;
    QString Filter;
    QString DialogTitle;
    QString InitDir;
    /// The chosen file; empty after a cancel, whatever an earlier use has left.
    QString FileName;
    /// 2 asks before a file is overwritten, 4 hides the read-only box, 8192 asks before one is
    /// made.
    int Flags = 0;

    void ShowOpen();
    void ShowSave();
};

} // namespace veltrona
