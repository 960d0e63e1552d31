#include "core/controls/commonDialog.h"

#include "core/platform/dialogs/dialogs.h"

namespace veltrona {

namespace {
FileDialogSetup setupOf(const CommonDialog &dialog) {
    return {.title = dialog.DialogTitle,
            .filter = dialog.Filter,
            .initialFolder = dialog.InitDir,
            .defaultExtension = dialog.DefaultExt,
            .confirmsOverwrite = (dialog.Flags & CommonDialog::overwritePrompt) != 0,
            .confirmsCreation = (dialog.Flags & CommonDialog::createPrompt) != 0,
            .finalName = dialog.FinalName};
}
} // namespace

void CommonDialog::ShowOpen() {
    FileName = dialogs().openFile(setupOf(*this));
}

void CommonDialog::ShowSave() {
    FileName = dialogs().saveFile(setupOf(*this));
}

} // namespace veltrona
