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
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

namespace veltrona {

namespace {
using Box = QMessageBox;

struct BoxStyle {
    MessageStyle style;
    Box::Icon icon;
    Box::StandardButtons buttons;
    Box::StandardButton defaultButton;
};

const BoxStyle boxStyles[] = {
    {MessageStyle::YesNoQuestion, Box::Question, Box::Yes | Box::No, Box::Yes},
    {MessageStyle::OkExclamation, Box::Warning, Box::Ok, Box::Ok},
    {MessageStyle::OkCancelExclamation, Box::Warning, Box::Ok | Box::Cancel, Box::Ok},
    {MessageStyle::YesNoExclamation, Box::Warning, Box::Yes | Box::No, Box::Yes},
    {MessageStyle::YesNoCancelCriticalDefaultNo, Box::Critical, Box::Yes | Box::No | Box::Cancel,
     Box::No},
};

Answer answerOf(int button) {
    return button == Box::Ok    ? Answer::Ok
           : button == Box::Yes ? Answer::Yes
           : button == Box::No  ? Answer::No
                                : Answer::Cancel;
}

// The start of a text that would not fit on the screen; the whole text if it does.
QString headOf(const QString &text, const Box &box) {
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
void copyWithoutBreakPlaces(Box &box) {
    QClipboard *clipboard = QGuiApplication::clipboard();
    QObject::connect(clipboard, &QClipboard::changed, &box, [clipboard](QClipboard::Mode mode) {
        QString copied = clipboard->text(mode);
        if (copied.contains(breakPlace))
            clipboard->setText(copied.remove(breakPlace), mode);
    });
}

// Lets long names break: the box would cut them off.
QString breakable(const QString &text, const Box &box) {
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

/// Qt computes the exact height of the box. A fractional scale of the screen rounds it down, which
/// would cut off the last line's descenders.
void addRoomForRounding(Box &box) {
    const double scale = box.devicePixelRatio();
    auto *label = box.findChild<QLabel *>(u"qt_msgbox_label"_s);
    if (label && scale != std::floor(scale))
        label->setContentsMargins(0, 0, 0, 2);
}

void fill(Box &box, const QString &title, const QString &text) {
    addRoomForRounding(box);
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
    Box box(desktop::owningWindow());
    box.setIcon(exists ? Box::Warning : Box::Question);
    box.setStandardButtons(Box::Yes | Box::No);
    box.setDefaultButton(exists ? Box::No : Box::Yes);
    fill(box, setup.title,
         (exists ? u"%1 already exists.\nDo you want to replace it?"_s
                 : u"%1 doesn't exist.\nDo you want to create it?"_s)
             .arg(QDir::toNativeSeparators(file)));
    return box.exec() == Box::Yes;
}

/// Adds the extension to a typed name if only the file with the extension exists.
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

/// Qt writes the folders of a file dialog to a file that all Qt programs share. Puts them back as
/// they were, so that no folder of a project stays there; view and widths are kept.
struct DeleteFileDialog {
    void operator()(QFileDialog *dialog) const {
        QSettings shared(QSettings::UserScope, u"QtProject"_s);
        shared.setFallbacksEnabled(false);
        shared.beginGroup(u"FileDialog"_s);
        std::map<QString, QVariant> before;
        for (const QString &key : {u"shortcuts"_s, u"history"_s, u"lastVisited"_s})
            before[key] = shared.value(key);
        delete dialog;
        for (const auto &[key, value] : before) {
            if (value.isNull())
                shared.remove(key);
            else
                shared.setValue(key, value);
        }
    }
};
using FileDialog = std::unique_ptr<QFileDialog, DeleteFileDialog>;

/// Empty after a cancel.
QString runFileDialog(QFileDialog &dialog) {
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
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
    Box box(desktop::owningWindow());
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
    Box box(desktop::owningWindow());
    box.setIcon(Box::Warning);
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
    const FileDialog dialog(new OpenFileDialog(setup.title, setup.defaultExtension));
    setUp(*dialog, setup);
    return QDir::toNativeSeparators(runFileDialog(*dialog));
}

QString QtDialogs::saveFile(const FileDialogSetup &setup) {
    const FileDialog dialog(new QFileDialog(desktop::owningWindow(), setup.title));
    setUp(*dialog, setup);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    // The question is asked here, for the name that is really written.
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    for (QString chosen; !(chosen = runFileDialog(*dialog)).isEmpty();) {
        chosen = withoutBlanks(chosen).toString(); // before the extension is added, too
        const QString name = setup.finalName ? setup.finalName(chosen)
                                             : withExtension(chosen, setup.defaultExtension);
        if (mayWrite(name, setup))
            return QDir::toNativeSeparators(name);
        dialog->selectFile(name);
    }
    return {};
}

} // namespace veltrona
