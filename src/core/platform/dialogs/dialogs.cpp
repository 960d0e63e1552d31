#include "core/platform/dialogs/dialogs.h"

namespace veltrona {

namespace {
Dialogs *installed = nullptr;
}

Dialogs &dialogs() {
    Q_ASSERT(installed);
    return *installed;
}

void setDialogs(Dialogs *dialogs) {
    installed = dialogs;
}

} // namespace veltrona
