// A file dialog as a control: properties that are set up, a show verb, and the chosen name.
#pragma once

#include <QString>

#include <functional>

namespace veltrona {

class CommonDialog {
public:
    /// 2 asks before a file is overwritten, 4 hides the read-only box, 8192 asks before one is
    /// made.
    static constexpr int overwritePrompt = 2;
    static constexpr int createPrompt = 8192;
    static constexpr int overwriteAndCreatePrompt = overwritePrompt + 4 + createPrompt;

    bool CancelError = false;
    QString DefaultExt = {};
    QString Filter = {};
    QString DialogTitle = {};
    QString InitDir = {};
    /// The chosen file; empty after a cancel, whatever an earlier use has left.
    QString FileName = {};
    int Flags = 0;
    /// The rule that a name to save gets its last shape by, so that the question is asked for the
    /// file that is really written; if empty, DefaultExt counts.
    std::function<QString(const QString &)> FinalName = {};

    void ShowOpen();
    void ShowSave();
};

} // namespace veltrona
