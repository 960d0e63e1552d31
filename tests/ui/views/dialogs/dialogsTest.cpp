// The message boxes and file dialogs that a user sees, answered by keys.
#include "ui/views/dialogs/qtDialogs.h"

#include "support/dataTable.h"
#include "support/shownForm.h"
#include "support/testFolder.h"
#include "ui/views/busyCursor.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace veltrona;

Q_DECLARE_METATYPE(veltrona::Answer)

namespace {
// Runs `scripts` on the modal windows as they come up, one after the other.
void whenUp(QList<std::function<void(QWidget *)>> scripts) {
    if (scripts.isEmpty())
        return;
    QTimer::singleShot(0, qApp, [scripts]() mutable {
        QWidget *window = QApplication::activeModalWidget();
        if (!window || !QTest::qWaitForWindowExposed(window)) {
            QTest::qFail("no window came up", __FILE__, __LINE__);
            return;
        }
        const auto script = scripts.takeFirst();
        whenUp(scripts);
        test::runIn(window, script);
    });
}

std::function<void(QWidget *)> pressing(Qt::Key key) {
    return [key](QWidget *window) {
        QWidget *target = window->focusWidget() ? window->focusWidget() : window;
        QTest::keyClick(target, key);
    };
}

// Types a name into a file dialog and accepts it.
std::function<void(QWidget *)> choosing(const QString &name) {
    return [name](QWidget *window) {
        auto *edit = window->findChild<QLineEdit *>("fileNameEdit");
        QVERIFY(edit);
        edit->setText(name);
        static_cast<QDialog *>(window)->accept();
    };
}

const FileDialogSetup newProject{"Create a new database", "Veltrona Data files (*.vlt)|*.vlt", "",
                                 "vlt", true};
} // namespace

class DialogsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void answers_data() {
        const test::DataTable<int, Answer, Answer, int> row;
        row("36", 36, Answer::Yes, Answer::No, QMessageBox::Question);
        row("48", 48, Answer::Ok, Answer::Ok, QMessageBox::Warning);
        row("49", 49, Answer::Ok, Answer::Cancel, QMessageBox::Warning);
        row("275", 275, Answer::No, Answer::Cancel, QMessageBox::Critical);
    }
    void answers() {
        const auto [style, enter, escape, icon] = test::row<int, Answer, Answer, int>();
        QtDialogs dialogs;
        const BusyCursor busy;
        whenUp({[expected = icon](QWidget *window) {
            QCOMPARE(int(static_cast<QMessageBox *>(window)->icon()), expected);
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
            pressing(Qt::Key_Return)(window);
        }});
        QCOMPARE(dialogs.message(MessageStyle(style), "Veltrona", "text"), enter);
        whenUp({pressing(Qt::Key_Escape)});
        QCOMPARE(dialogs.message(MessageStyle(style), "Veltrona", "text"), escape);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }

    void textsArePlainWithLinesBroken() {
        QtDialogs dialogs;
        whenUp({[](QWidget *window) {
            auto *box = static_cast<QMessageBox *>(window);
            QCOMPARE(box->text(), "<b>a</b>&amp;\nb\nc\nd");
            const auto *label = box->findChild<QLabel *>("qt_msgbox_label");
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QVERIFY(label->height() >= 4 * label->fontMetrics().height());
            QVERIFY(box->detailedText().isEmpty());
            pressing(Qt::Key_Return)(window);
        }});
        dialogs.message(MessageStyle::OkExclamation, "Veltrona", "<b>a</b>&amp;\rb\r\nc\nd");
    }

    void longTextsStayOnTheScreen_data() {
        const test::DataTable<QString> row;
        row("one word", QString(100'000, 'W'));
        row("lines", QString("line\r\n").repeated(5000));
        row("a file name", "/" + QString(250, 'W') + ".xml");
        row("a path", QString("/a-folder-of-the-path").repeated(190));
    }
    void longTextsStayOnTheScreen() {
        const QString text = std::get<0>(test::row<QString>());
        QtDialogs dialogs;
        whenUp({[&](QWidget *window) {
            auto *box = static_cast<QMessageBox *>(window);
            const QRect screen = box->screen()->availableGeometry();
            QVERIFY(box->width() <= screen.width());
            QVERIFY(box->height() <= screen.height());
            const QString whole = box->detailedText().isEmpty() ? box->text() : box->detailedText();
            QCOMPARE(whole, withLineBreaks(text));
            auto *label = box->findChild<QLabel *>("qt_msgbox_label");
            QVERIFY(label->minimumSizeHint().width() <= label->width());
            if (text.startsWith(u'/') && box->detailedText().isEmpty()) { // copied as it is
                label->setSelection(0, static_cast<int>(label->text().size()));
                QTest::keySequence(label, QKeySequence::Copy);
                QCOMPARE(QGuiApplication::clipboard()->text(), text);
            }
            for (const QAbstractButton *button : box->buttons())
                QVERIFY(box->rect().contains(QRect(button->mapTo(box, QPoint()), button->size())));
            box->button(QMessageBox::Ok)->click();
        }});
        dialogs.message(MessageStyle::OkExclamation, "Veltrona", text);
    }

    void projectFoldersStayOutOfTheSharedLists_data() {
        const test::DataTable<QStringList> row;
        row("none", {});
        row("folders of other programs", {"file:///tmp", "file:"});
    }
    void projectFoldersStayOutOfTheSharedLists() {
        const auto [earlier] = test::row<QStringList>();
        QSettings shared(QSettings::UserScope, "QtProject");
        shared.clear();
        const QStringList keys{"FileDialog/shortcuts", "FileDialog/history"};
        for (const QString &key : keys) {
            if (!earlier.isEmpty())
                shared.setValue(key, earlier);
        }
        const QTemporaryDir folder;
        const FileDialogSetup setup{"Open", "Text (*.txt)|*.txt", folder.path(), "txt", false};
        test::write(folder.filePath("a.txt"), {});
        QtDialogs dialogs([&] { return QStringList(folder.path()); });
        const auto chooses = [&](QWidget *window) {
            const QUrl place = QUrl::fromLocalFile(folder.path());
            QVERIFY(static_cast<QFileDialog *>(window)->sidebarUrls().contains(place));
            choosing(folder.filePath("a.txt"))(window);
        };
        whenUp({chooses});
        QVERIFY(!dialogs.openFile(setup).isEmpty());
        whenUp({chooses});
        QVERIFY(!dialogs.saveFile(setup).isEmpty());
        for (const QString &key : keys)
            QCOMPARE(shared.value(key).toStringList(), earlier);
        const QByteArray content = test::contents(shared.fileName());
        QVERIFY(content.contains("viewMode") && !content.contains(folder.path().toUtf8()));
    }

    void choicesKeepTheirOrder() {
        QtDialogs dialogs;
        const QStringList buttons{"Open another\u2026", "Use the default project", "Quit"};
        whenUp({pressing(Qt::Key_Return)});
        QCOMPARE(dialogs.choose("Veltrona", "text", buttons), 0);
        whenUp({pressing(Qt::Key_Escape)});
        QCOMPARE(dialogs.choose("Veltrona", "text", buttons), 2);
    }

    void replacingIsAskedForTheNameThatIsWritten() {
        const QTemporaryDir folder;
        test::write(folder.filePath("a.vlt"), {});
        FileDialogSetup setup = newProject;
        setup.initialFolder = folder.path();
        QtDialogs dialogs;
        const auto declining = [](QWidget *window) {
            auto *box = qobject_cast<QMessageBox *>(window);
            QVERIFY(box && box->text().contains("a.vlt"));
            QCOMPARE(box->icon(), QMessageBox::Warning);
            pressing(Qt::Key_Return)(window); // No is the default
        };
        const auto accepting = [](QWidget *window) {
            qobject_cast<QMessageBox *>(window)->button(QMessageBox::Yes)->click();
        };
        whenUp({choosing("a"), declining, choosing("b")});
        QCOMPARE(QFileInfo(dialogs.saveFile(setup)).fileName(), "b.vlt");
        for (const char *name : {"a", "a.vlt ", "a  "}) {
            whenUp({choosing(name), accepting});
            QCOMPARE(QFileInfo(dialogs.saveFile(setup)).fileName(), "a.vlt");
        }
        whenUp({choosing("a"), declining, pressing(Qt::Key_Escape)});
        QCOMPARE(dialogs.saveFile(setup), QString());
        whenUp({choosing("a")});
        QCOMPARE(QFileInfo(dialogs.openFile(setup)).fileName(), "a.vlt");
        setup.confirmsCreation = true;
        whenUp({choosing("new"),
                [](QWidget *window) {
                    auto *box = qobject_cast<QMessageBox *>(window);
                    QVERIFY(box && box->text().contains("new.vlt doesn't exist"));
                    pressing(Qt::Key_Escape)(window);
                },
                choosing("new"), pressing(Qt::Key_Return)}); // Yes is the default
        QCOMPARE(QFileInfo(dialogs.saveFile(setup)).fileName(), "new.vlt");
        setup.confirmsCreation = false;
        // A rule of the caller's in the place of the default extension.
        setup.finalName = [](const QString &name) { return name + ".vlt"; };
        whenUp({choosing("a"), accepting});
        QCOMPARE(QFileInfo(dialogs.saveFile(setup)).fileName(), "a.vlt");
    }
};

QTEST_MAIN(DialogsTest)
#include "dialogsTest.moc"
