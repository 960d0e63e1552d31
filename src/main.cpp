#include "ui/shell/start.h"
#include "ui/views/qtDialogs.h"

int main(int argc, char **argv) {
    veltrona::Application application(argc, argv);
    veltrona::QtDialogs dialogs;
    veltrona::setDialogs(&dialogs);
    return veltrona::modMain::Main();
}
