// The start routine and the application object.
#pragma once

#include <QApplication>

namespace veltrona {

/// Passes what a handler let through to the error filter.
class Application : public QApplication {
    Q_OBJECT

public:
    Application(int &argc, char **argv);
    bool notify(QObject *receiver, QEvent *event) override;
};

namespace modMain {

/// Shows the main window until it has unloaded; gives the exit status of the process. Needs an
/// Application and installed dialogs.
int Main();

/// The program's own folder and that of the open project.
QStringList places();

} // namespace modMain

} // namespace veltrona
