#include "core/platform/services.h"
#include "ui/shell/start.h"
#include "ui/views/clipboard.h"
#include "ui/views/dialogs/qtDialogs.h"

#include <QDebug>

#include <cstdio>

int main(int argc, char **argv) {
    veltrona::Application application(argc, argv);
    // QApplication has removed its own arguments.
    if (argc > 1) {
        QString text;
        QDebug(&text).nospace() << "veltrona: takes no argument "
                                << QString::fromLocal8Bit(argv[1]);
        std::fprintf(stderr, "%s\n", qPrintable(text));
        return 2;
    }
    veltrona::QtDialogs dialogs(veltrona::modMain::places);
    veltrona::Services &services = veltrona::services();
    services.dialogs = &dialogs;
    services.clipboard = veltrona::drawing::toSystemClipboard;
    services.fatalNote = QStringLiteral("The records that were imported are kept.");
    return veltrona::modMain::Main();
}
