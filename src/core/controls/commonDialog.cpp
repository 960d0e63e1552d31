#include "core/controls/commonDialog.h"

#include "core/platform/dialogs/dialogs.h"

namespace veltrona {

namespace {
constexpr int overwritePrompt = 2;
constexpr int createPrompt = 8192;

FileDialogSetup setupOf(const CommonDialog &dialog) {
    return {dialog.DialogTitle,
            dialog.Filter,
            dialog.InitDir,
            dialog.DefaultExt,
            (dialog.Flags & overwritePrompt) != 0,
            (dialog.Flags & createPrompt) != 0,
            dialog.FinalName};
}
} // namespace

void CommonDialog::ShowOpen() {
    FileName = dialogs().openFile(setupOf(*this));
}

void CommonDialog::ShowSave() {
    FileName = dialogs().saveFile(setupOf(*this));
}

} // namespace veltrona
