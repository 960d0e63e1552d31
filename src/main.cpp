#include "core/platform/services.h"
#include "ui/shell/start.h"
#include "ui/views/clipboard.h"
#include "ui/views/dialogs/qtDialogs.h"

#include <QApplication>
#include <QDebug>

#include <algorithm>
#include <cstdio>
#include <vector>

/// Whether Qt has been told of a display: without one it aborts.
static bool isDisplayKnown(int count, char **arguments) {
    const char *const variables[] = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    return std::any_of(std::begin(variables), std::end(variables),
                       [](const char *name) { return !qEnvironmentVariableIsEmpty(name); }) ||
           std::any_of(arguments, arguments + count, [](const char *argument) {
               return QByteArrayView(argument).endsWith("-display");
           });
}

/// The first argument that isn't one of Qt's, null if all are.
static const char *foreignArgument(int count, char **arguments) {
    std::vector<char *> rest(arguments, arguments + count + 1);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication remover(count, rest.data());
    qunsetenv("QT_QPA_PLATFORM");
    return count > 1 ? rest[1] : nullptr;
}

static int refuse(const char *argument) {
    QString text;
    QDebug(&text).nospace() << "veltrona: takes no argument " << QString::fromLocal8Bit(argument);
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return 2;
}

int main(int argc, char **argv) {
    if (argc > 1 && !isDisplayKnown(argc, argv)) {
        if (const char *argument = foreignArgument(argc, argv))
            return refuse(argument);
    }
    veltrona::Application application(argc, argv);
    // QApplication has removed its own arguments.
    if (argc > 1)
        return refuse(argv[1]);
    veltrona::QtDialogs dialogs(veltrona::modMain::places);
    veltrona::Services &services = veltrona::services();
    services.dialogs = &dialogs;
    services.clipboard = veltrona::drawing::toSystemClipboard;
    services.fatalNote = QStringLiteral("The records that were imported are kept.");
    return veltrona::modMain::Main();
}
