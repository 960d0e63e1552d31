#include "platform/dialogs/qtDialogs.h"
#include "shell/start.h"

int main(int argc, char **argv) {
    veltrona::Application application(argc, argv);
    veltrona::QtDialogs dialogs;
    veltrona::setDialogs(&dialogs);
    return veltrona::modMain::Main();
}
