// A second running program for the tests: opens a project in a main window of its own and imports a
// report into it. Arguments: project, report, and a file that it makes once it is ready; it imports
// when a file of the same name with ".go" behind it is there. Exit status 0 if no box came up.
#include "shell/modMain.h"
#include "support/mainWindow.h"

#include <QApplication>
#include <QFile>
#include <QTest>

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    veltrona::test::MainWindow window;
    if (arguments.size() != 4 || !window.start())
        return 2;
    window.dialogs.expectFile(arguments[1]);
    window.command("mnuOpen");
    QFile ready(arguments[3]);
    if (!ready.open(QIODevice::WriteOnly))
        return 2;
    if (!QTest::qWaitFor([&] { return QFile::exists(arguments[3] + ".go"); }, 60'000))
        return 2;
    window.importReport(arguments[2]);
    for (const veltrona::test::ShownBox &box : window.dialogs.boxes())
        qWarning("%s", qPrintable(box.text));
    return window.dialogs.boxes().isEmpty() ? 0 : 1;
}
