// The guided tour as a program of its own: it needs a display with a window manager and leaves the
// settings and projects of the user alone.
#include "tour/tour.h"
#include "ui/shell/start.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTextStream>

#include <csignal>
#include <string_view>

#include <unistd.h>

namespace {

constexpr unsigned longestRun = 150; // in seconds

/// Ends the process, also if no event comes through any more.
extern "C" void giveUp(int) {
    constexpr std::string_view told = "The tour is given up: it takes too long.\n";
    _exit(write(STDERR_FILENO, told.data(), told.size()) < 0 ? 2 : 1);
}

/// Nothing of an earlier tour stays, so that what lies there is what this one has made.
bool prepare(QDir &folder) {
    if (!folder.mkpath("."))
        return false;
    for (const QString &old : folder.entryList(
             {"[0-9][0-9]-*.png", "grid.txt", "graph.jpg", "report.html", "report.pdf"},
             QDir::Files))
        folder.remove(old);
    return true;
}

} // namespace

int main(int argc, char **argv) {
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath("config").toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.filePath("data").toLocal8Bit());
    veltrona::Application application(argc, argv);
    // On a busy machine the letters typed into a list come far apart.
    QApplication::setKeyboardInputInterval(10'000);
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream err(stderr);
    if (arguments.size() != 3) {
        err << "usage: veltrona_tour REPORT FOLDER\n";
        return 2;
    }
    QDir folder(QDir(arguments.at(2)).absolutePath());
    if (!home.isValid() || !prepare(folder)) {
        err << "Can't make the folders for the tour: " << folder.path() << '\n';
        return 1;
    }
    std::signal(SIGALRM, giveUp);
    alarm(longestRun);
    veltrona::tour::Tour tour(QDir().absoluteFilePath(arguments.at(1)), folder.path());
    const bool succeeded = tour.run();
    QTextStream out(stdout);
    for (const QString &file : tour.files())
        out << file << '\n';
    out << '\n' << tour.gridText();
    return succeeded ? 0 : 1;
}
