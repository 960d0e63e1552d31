#include "ui/views/dialogs/qtDialogs.h"

#include "core/base/text.h"
#include "ui/views/busyCursor.h"
#include "ui/views/dialogs/forms.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QUrl>

#include <algorithm>
#include <optional>

namespace veltrona {

namespace {
struct BoxStyle {
    MessageStyle style;
    QMessageBox::Icon icon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton;
};

const BoxStyle boxStyles[] = {
    {MessageStyle::YesNoQuestion, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
     QMessageBox::Yes},
    {MessageStyle::OkExclamation, QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok},
    {MessageStyle::OkCancelExclamation, QMessageBox::Warning, QMessageBox::Ok | QMessageBox::Cancel,
     QMessageBox::Ok},
    {MessageStyle::YesNoExclamation, QMessageBox::Warning, QMessageBox::Yes | QMessageBox::No,
     QMessageBox::Yes},
    {MessageStyle::YesNoCancelCriticalDefaultNo, QMessageBox::Critical,
     QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No},
};

Answer answerOf(int button) {
    return button == QMessageBox::Ok    ? Answer::Ok
           : button == QMessageBox::Yes ? Answer::Yes
           : button == QMessageBox::No  ? Answer::No
                                        : Answer::Cancel;
}

// The start of a text that would not fit on the screen; the whole text if it does.
QString headOf(const QString &text, const QMessageBox &box) {
    const QSize screen = box.screen()->availableSize();
    const int lines = qMax(5, screen.height() / 3 / box.fontMetrics().lineSpacing());
    const int lineLength =
        qMax(20, qMin(500, screen.width() / 2) / qMax(1, box.fontMetrics().averageCharWidth()));
    qsizetype end = 0;
    for (int line = 0; line < lines && end < text.size(); ++line) {
        const qsizetype lineBreak = text.indexOf(u'\n', end);
        const qsizetype next = lineBreak < 0 ? text.size() : lineBreak + 1;
        end = qMin(next, end + lineLength);
    }
    return shortened(text, end);
}

constexpr QChar breakPlace(0x200B); // takes no room

/// Strips the zero-width spaces from text copied out of the box.
void copyWithoutBreakPlaces(QMessageBox &box) {
    QClipboard *clipboard = QGuiApplication::clipboard();
    QObject::connect(clipboard, &QClipboard::changed, &box, [clipboard](QClipboard::Mode mode) {
        QString copied = clipboard->text(mode);
        if (copied.contains(breakPlace))
            clipboard->setText(copied.remove(breakPlace), mode);
    });
}

// Lets long names break: the box would cut them off.
QString breakable(const QString &text, const QMessageBox &box) {
    constexpr int widest = 450; // pixels without a place to break at
    const QString places = u" /-\n\t"_s;
    QString broken;
    int width = 0;
    for (const QChar c : text) {
        width = places.contains(c) ? 0 : width + box.fontMetrics().horizontalAdvance(c);
        if (width > widest && !c.isLowSurrogate()) {
            broken += breakPlace;
            width = 0;
        }
        broken += c;
    }
    return broken;
}

void fill(QMessageBox &box, const QString &title, const QString &text) {
    const QString whole = withLineBreaks(text);
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title);
    box.setText(breakable(headOf(whole, box), box));
    if (box.text() != whole)
        box.setDetailedText(whole);
    if (!whole.contains(breakPlace))
        copyWithoutBreakPlaces(box);
}

/// Asks about the name that is really written, if the setup wants it.
bool mayWrite(const QString &file, const FileDialogSetup &setup) {
    const bool exists = QFileInfo::exists(file);
    if (exists ? !setup.confirmsOverwrite : !setup.confirmsCreation)
        return true;
    QMessageBox box(desktop::owningWindow());
    box.setIcon(exists ? QMessageBox::Warning : QMessageBox::Question);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(exists ? QMessageBox::No : QMessageBox::Yes);
    fill(box, setup.title,
         (exists ? u"%1 already exists.\nDo you want to replace it?"_s
                 : u"%1 doesn't exist.\nDo you want to create it?"_s)
             .arg(QDir::toNativeSeparators(file)));
    return box.exec() == QMessageBox::Yes;
}

/// Takes a name that is typed without its extension for the file that has it, but only where no
/// file has the name as it is.
class OpenFileDialog : public QFileDialog {
public:
    OpenFileDialog(const QString &title, QString extension)
        : QFileDialog(desktop::owningWindow(), title), m_extension(std::move(extension)) {
        setFileMode(ExistingFile);
    }

protected:
    void accept() override {
        auto *field = findChild<QLineEdit *>(u"fileNameEdit"_s);
        if (field && !field->text().isEmpty() && !m_extension.isEmpty()) {
            const QString name = field->text() + u'.' + m_extension;
            if (!exists(field->text()) && exists(name))
                field->setText(name);
        }
        QFileDialog::accept();
    }

private:
    bool exists(const QString &name) const {
        return QFileInfo::exists(directory().absoluteFilePath(name));
    }

    QString m_extension;
};

std::optional<QString> runFileDialog(QFileDialog &dialog) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().first();
}
} // namespace

QString qtFilter(const QString &filter) {
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString patterns = QString(parts.at(i + 1)).replace(u';', u' ');
        QString description = parts.at(i);
        if (const qsizetype bracket = description.lastIndexOf(u'('); bracket >= 0)
            description.truncate(bracket);
        filters += description.trimmed() + u" ("_s + patterns + u')';
    }
    return filters.join(u";;"_s);
}

QString withExtension(const QString &name, const QString &extension) {
    const QString end = u'.' + extension;
    if (extension.isEmpty() || name.endsWith(end, Qt::CaseInsensitive))
        return name;
    return name + end;
}

QString withLineBreaks(const QString &text) {
    return QString(text).replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n');
}

Answer QtDialogs::message(MessageStyle style, const QString &title, const QString &text,
                          const QString &details) {
    const OrdinaryCursor cursor;
    QMessageBox box(desktop::owningWindow());
    const BoxStyle &known = *std::ranges::find(boxStyles, style, &BoxStyle::style);
    box.setIcon(known.icon);
    box.setStandardButtons(known.buttons);
    box.setDefaultButton(known.defaultButton);
    fill(box, title, text);
    if (!details.isEmpty())
        box.setDetailedText(details);
    return answerOf(box.exec());
}

int QtDialogs::choose(const QString &title, const QString &text, const QStringList &buttons) {
    QMessageBox box(desktop::owningWindow());
    box.setIcon(QMessageBox::Warning);
    QList<QAbstractButton *> choices;
    for (const QString &button : buttons)
        choices += box.addButton(button, QMessageBox::ActionRole);
    box.setDefaultButton(static_cast<QPushButton *>(choices.first()));
    box.setEscapeButton(choices.last());
    fill(box, title, text);
    box.exec();
    const qsizetype chosen = choices.indexOf(box.clickedButton());
    return static_cast<int>(chosen < 0 ? choices.size() - 1 : chosen);
}

void QtDialogs::setUp(QFileDialog &dialog, const FileDialogSetup &setup) const {
    dialog.setNameFilter(qtFilter(setup.filter));
    dialog.setDirectory(setup.initialFolder.isEmpty() ? QDir::homePath() : setup.initialFolder);
    QList<QUrl> urls = dialog.sidebarUrls();
    for (const QString &folder : m_places ? m_places() : QStringList()) {
        const QUrl url = QUrl::fromLocalFile(QDir::cleanPath(folder));
        if (QFileInfo(folder).isDir() && !urls.contains(url))
            urls.append(url);
    }
    dialog.setSidebarUrls(urls);
}

QString QtDialogs::openFile(const FileDialogSetup &setup) {
    OpenFileDialog dialog(setup.title, setup.defaultExtension);
    setUp(dialog, setup);
    return QDir::toNativeSeparators(runFileDialog(dialog).value_or(QString()));
}

QString QtDialogs::saveFile(const FileDialogSetup &setup) {
    QFileDialog dialog(desktop::owningWindow(), setup.title);
    setUp(dialog, setup);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // The question is asked here, for the name that is really written.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    while (const std::optional<QString> chosen = runFileDialog(dialog)) {
        const QString name = setup.finalName ? setup.finalName(*chosen)
                                             : withExtension(*chosen, setup.defaultExtension);
        if (mayWrite(name, setup))
            return QDir::toNativeSeparators(name);
        dialog.selectFile(name);
    }
    return {};
}

} // namespace veltrona
