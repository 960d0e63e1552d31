// frmMain: the project commands and the start on a project that can't be opened.
#include "core/base/blanks.h"
#include "core/base/command.h"
#include "core/base/product.h"
#include "core/database/projectFile.h"
#include "core/platform/desktop/folders.h"
#include "core/platform/dialogs/dialogs.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"
#include "core/shell/settings.h"
#include "ui/shell/frmMain.h"
#include "ui/views/hourglass.h"

#include <QDir>

namespace veltrona {

namespace {

const QString projectFilter = productName + QStringLiteral(" Data files (*.vlt)|*.vlt");
const QString projectExtension = QStringLiteral(".vlt");

QString defaultProjectPath() {
    return modMain::DataFolder + QDir::separator() + productName + QDir::separator() + productName +
           projectExtension;
}

QString templatePath() {
    return desktop::programFolder() + QDir::separator() + QStringLiteral("data.dat");
}

CommonDialog projectDialog(const QString &title) {
    return {.DefaultExt = QStringLiteral("vlt"),
            .Filter = projectFilter,
            .DialogTitle = title,
            .InitDir = modMain::getSpecialFolder(modMain::documentsFolder)};
}

void rememberProject(const QString &path) {
    saveSetting(settingsKey, QStringLiteral("dbfname"), path, textValue);
}

} // namespace

QString frmMain::getFileName(const QString &fname) const {
    return projectTitle(fname);
}

void frmMain::makeDefaultProject() {
    makeMissingProject(templatePath(), defaultProjectPath());
}

void frmMain::useDefaultProject() {
    modMain::ProjectTitle = productName;
    modMain::DbFileName = defaultProjectPath();
}

void frmMain::setProject(const QString &path) {
    modMain::ProjectTitle = getFileName(path);
    modMain::DbFileName = path;
}

bool frmMain::openFirstProject() {
    for (;;) {
        try {
            const CommandScope command; // locks are waited for anew in each round
            // The folder also takes the printed report, so it has to be there for any project.
            const bool isDefault = modMain::DbFileName == defaultProjectPath();
            try {
                makeDefaultProject();
            } catch (const Failure &) {
                if (isDefault)
                    throw;
            }
            initApp(true);
            return true;
        } catch (const Failure &failure) {
            if (services().endRequested || !askAboutBadProject(failure))
                return false;
        }
    }
}

bool frmMain::askAboutBadProject(const Failure &failure) {
    const bool isDefault = modMain::DbFileName == defaultProjectPath();
    const QString text = QStringLiteral("The project \"%1\" can't be opened.\r\rError %2: %3")
                             .arg(QDir::toNativeSeparators(modMain::DbFileName),
                                  QString::number(failure.number()), failure.text());
    // Setting it aside would take file and journal from under the program that writes.
    constexpr int locked = 5;
    const bool isLocked = (failure.number() & 0xff) == locked;
    const QString second = !isDefault ? QStringLiteral("&Use the default project")
                           : isLocked ? QStringLiteral("&Try again")
                                      : QStringLiteral("&Set it aside and make a new one");
    const int choice = dialogs().choose(
        productName, text, {QStringLiteral("&Open another..."), second, QStringLiteral("&Quit")});
    switch (choice) {
    case 0:
        if (chooseProjectFile()) {
            const QString path = withoutBlanks(cdMain.FileName).toString();
            rememberProject(path);
            setProject(path);
        }
        return true;
    case 1:
        if (isDefault && isLocked) {
            return true;
        } else if (isDefault) {
            filtered([] { setProjectAside(defaultProjectPath()); });
        } else {
            rememberProject(QString());
            useDefaultProject();
        }
        return true;
    default:
        return false;
    }
}

bool frmMain::chooseProjectFile() {
    cdMain = projectDialog(QStringLiteral("Open database"));
    cdMain.ShowOpen();
    return !cdMain.FileName.isEmpty();
}

void frmMain::mnuOpen_Click() {
    if (chooseProjectFile())
        switchProject(withoutBlanks(cdMain.FileName).toString(), QString());
}

void frmMain::mnuNew_Click() {
    cdMain = projectDialog(QStringLiteral("Create a new database"));
    cdMain.Flags = CommonDialog::overwriteAndCreatePrompt;
    cdMain.ShowSave();
    if (cdMain.FileName.isEmpty())
        return;
    QString path = withoutBlanks(cdMain.FileName).toString();
    if (!path.endsWith(projectExtension, Qt::CaseInsensitive))
        path += projectExtension;
    if (isSameFile(path, modMain::DbFileName)) {
        dialogs().message(MessageStyle::OkExclamation, productName,
                          QStringLiteral("\"%1\" is the project that is open. Choose another name "
                                         "for the new project.")
                              .arg(QDir::toNativeSeparators(path)));
        return;
    }
    switchProject(path, templatePath());
}

/// The setting takes the new path whatever follows; path and title go back if the switch fails, and
/// the project that was open stays open.
void frmMain::switchProject(const QString &path, const QString &newFromTemplate) {
    const QString fileBefore = modMain::DbFileName;
    const QString titleBefore = modMain::ProjectTitle;
    rememberProject(path);
    setProject(path);
    try {
        if (!newFromTemplate.isEmpty())
            makeProject(newFromTemplate, path);
        initApp(false);
    } catch (...) {
        modMain::DbFileName = fileBefore;
        modMain::ConnectionText = fileBefore;
        modMain::ProjectTitle = titleBefore;
        if (std::exchange(m_viewStale, false))
            filtered([this] { loadDefaults(); });
        throw;
    }
}

void frmMain::mnuClean_Click() {
    const Answer answer = dialogs().message(
        MessageStyle::YesNoCancelCriticalDefaultNo, QStringLiteral("Delete all the data"),
        QStringLiteral("Are you sure you want to erase all of the database contents?"));
    if (answer != Answer::Yes)
        return;
    const Hourglass hourglass;
    cleanProject(*modMain::DbConn);
    loadDefaults();
}

} // namespace veltrona
