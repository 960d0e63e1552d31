// The interface of everything modal that a user answers: message boxes, file dialogs and choices.
// The program shows Qt's dialogs; tests set a recorder that answers by itself and fails on an
// unexpected box.
#pragma once

#include "core/platform/services.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace veltrona {

/// The message boxes in use, by their style number.
enum class MessageStyle {
    YesNoQuestion = 36,
    OkExclamation = 48,
    OkCancelExclamation = 49,
    YesNoExclamation = 52,
    YesNoCancelCriticalDefaultNo = 275,
};

enum class Answer { Ok, Cancel, Yes, No };

/// How a file dialog is set up. Filters have the form "XML files (*.xml)|*.xml".
struct FileDialogSetup {
    QString title;
    QString filter;
    QString initialFolder;
    QString defaultExtension; // without the dot; empty: none is added
    // Of a save dialog: whether it asks before a file is overwritten, and before one is made.
    bool confirmsOverwrite = true;
    bool confirmsCreation = false;
    /// Completes the name chosen in a save dialog before it asks; if empty, the default extension
    /// is added.
    std::function<QString(const QString &)> finalName = {};
};

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Shows a modal message box, if there are details, with a button that unfolds them. All texts
    /// are plain text: markup in them is shown, not rendered.
    virtual Answer message(MessageStyle style, const QString &title, const QString &text,
                           const QString &details = {}) = 0;

    /// A question with custom buttons; gives the index of the button pressed, the last one if the
    /// box was closed by Esc or the window's close button.
    virtual int choose(const QString &title, const QString &text, const QStringList &buttons) = 0;

    /// The chosen file in the platform's own notation, or the empty text after a cancel.
    virtual QString openFile(const FileDialogSetup &setup) = 0;
    virtual QString saveFile(const FileDialogSetup &setup) = 0;
};

/// The dialogs in force.
inline Dialogs &dialogs() {
    Q_ASSERT(services().dialogs);
    return *services().dialogs;
}

} // namespace veltrona
