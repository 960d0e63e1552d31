// The program with its real main window, doing one command by itself: kills.py kills it meanwhile.
// It says "ready" before the command, and after it how often the command has synced, renamed or
// removed a file; with KILL_BEFORE set to a number it kills itself before that one of these. A
// message of a failure goes to standard error and ends it with status 1.
//
// Usage: killedProgram import REPORT | clean | new PROJECT | export PAGE
#include "core/platform/dialogs/dialogs.h"
#include "ui/shell/frmMain.h"
#include "ui/shell/start.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace veltrona;

namespace {

int steps = 0;
int lastStep = 0;

void countStep() {
    if (++steps == lastStep)
        std::raise(SIGKILL);
}

} // namespace

// These stand before the C library's of the same names, also for SQLite and Qt.
extern "C" {
int fsync(int file) {
    countStep();
    return static_cast<int>(syscall(SYS_fsync, file));
}
int fdatasync(int file) {
    countStep();
    return static_cast<int>(syscall(SYS_fdatasync, file));
}
int rename(const char *from, const char *to) noexcept {
    countStep();
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}
int unlink(const char *path) noexcept {
    countStep();
    return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}
}

namespace {

class Answers : public Dialogs {
public:
    explicit Answers(QString file) : m_file(std::move(file)) {}

    Answer message(MessageStyle style, const QString &, const QString &text,
                   const QString &) override {
        if (style == MessageStyle::YesNoCancelCriticalDefaultNo)
            return Answer::Yes; // to clean
        if (style == MessageStyle::YesNoQuestion)
            return Answer::No; // the page is not to be opened
        fail(text);
    }
    int choose(const QString &, const QString &text, const QStringList &) override { fail(text); }
    QString openFile(const FileDialogSetup &) override { return m_file; }
    QString saveFile(const FileDialogSetup &) override { return m_file; }

private:
    [[noreturn]] static void fail(const QString &text) {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::_Exit(1);
    }

    QString m_file;
};

void fillExportForm(const QString &page) {
    QWidget *form = QApplication::activeModalWidget();
    form->findChild<QLineEdit *>("txtFilename")->setText(page);
    form->findChild<QPushButton *>("cmdRun")->click();
}

} // namespace

int main(int argc, char **argv) {
    Application application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString command = arguments.value(1);
    const QString file = arguments.value(2);
    Answers answers(file);
    services().dialogs = &answers;
    frmMain window;
    if (!window.Form_Load())
        return 1;
    window.show();
    QApplication::processEvents();
    const QString name = "mnu" + command.left(1).toUpper() + command.mid(1);
    auto *action = window.findChild<QAction *>(name);
    if (!action)
        return 2;
    if (command == QLatin1String("export"))
        QTimer::singleShot(0, &window, [&] { fillExportForm(file); });
    std::puts("ready");
    std::fflush(stdout);
    lastStep = qEnvironmentVariableIntValue("KILL_BEFORE");
    steps = 0;
    action->trigger();
    std::printf("%d\n", steps);
    std::fflush(stdout);
    window.close();
    return 0;
}
