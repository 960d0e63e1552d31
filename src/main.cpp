#include "ui/shell/start.h"
#include "ui/views/dialogs/qtDialogs.h"

#include <QDebug>

#include <cstdio>

int main(int argc, char **argv) {
    veltrona::Application application(argc, argv);
    // The toolkit has taken out what is meant for it.
    if (argc > 1) {
        QString told;
        QDebug(&told).nospace() << "veltrona: takes no argument "
                                << QString::fromLocal8Bit(argv[1]);
        std::fprintf(stderr, "%s\n", qPrintable(told));
        return 2;
    }
    veltrona::QtDialogs dialogs(veltrona::modMain::places);
    veltrona::setDialogs(&dialogs);
    return veltrona::modMain::Main();
}
