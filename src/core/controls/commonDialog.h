// A file dialog as a control: its setup as properties, verbs that show it, and the chosen name.
#pragma once

#include <QString>

#include <functional>

namespace veltrona {

class CommonDialog {
public:
    /// Bits of Flags: 2 asks before overwriting a file, 4 hides the read-only box, 8192 asks before
    /// creating one.
    static constexpr int overwritePrompt = 2;
    static constexpr int createPrompt = 8192;
    static constexpr int overwriteAndCreatePrompt = overwritePrompt + 4 + createPrompt;

    bool CancelError = false;
    QString DefaultExt = {};
    QString Filter = {};
    QString DialogTitle = {};
    QString InitDir = {};
    /// The chosen file; empty after a cancel.
    QString FileName = {};
    int Flags = 0;
    /// Completes a chosen name before the dialog asks about overwriting; if empty, DefaultExt is
    /// added.
    std::function<QString(const QString &)> FinalName = {};

    void ShowOpen();
    void ShowSave();
};

} // namespace veltrona
