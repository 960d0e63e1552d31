// The message boxes and file dialogs that a user sees, answered by keys.
#include "platform/dialogs/qtDialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace veltrona;

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
        script(window);
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
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("enter");
        QTest::addColumn<int>("escape");
        QTest::addColumn<int>("icon");
        QTest::newRow("36") << 36 << int(Answer::Yes) << int(Answer::No)
                            << int(QMessageBox::Question);
        QTest::newRow("48") << 48 << int(Answer::Ok) << int(Answer::Ok)
                            << int(QMessageBox::Warning);
        QTest::newRow("49") << 49 << int(Answer::Ok) << int(Answer::Cancel)
                            << int(QMessageBox::Warning);
        QTest::newRow("52") << 52 << int(Answer::Yes) << int(Answer::No)
                            << int(QMessageBox::Warning);
        QTest::newRow("275") << 275 << int(Answer::No) << int(Answer::Cancel)
                             << int(QMessageBox::Critical);
    }

    void answers() {
        QFETCH(int, style);
        QFETCH(int, icon);
        QtDialogs dialogs;
        whenUp({[&](QWidget *window) {
            QCOMPARE(int(static_cast<QMessageBox *>(window)->icon()), icon);
            pressing(Qt::Key_Return)(window);
        }});
        QTEST(int(dialogs.message(MessageStyle(style), "Veltrona", "text")), "enter");
        whenUp({pressing(Qt::Key_Escape)});
        QTEST(int(dialogs.message(MessageStyle(style), "Veltrona", "text")), "escape");
    }

    void textsArePlainWithLinesBroken() {
        QtDialogs dialogs;
        whenUp({[](QWidget *window) {
            auto *box = static_cast<QMessageBox *>(window);
            QCOMPARE(box->text(), QString("<b>a</b>&amp;\nb\nc\nd"));
            const auto *label = box->findChild<QLabel *>("qt_msgbox_label");
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QVERIFY(label->height() >= 4 * label->fontMetrics().height());
            QVERIFY(box->detailedText().isEmpty());
            pressing(Qt::Key_Return)(window);
        }});
        dialogs.message(MessageStyle::OkExclamation, "Veltrona", "<b>a</b>&amp;\rb\r\nc\nd");
    }

    void longTextsStayOnTheScreen_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("one word") << QString(100'000, 'W');
        QTest::newRow("lines") << QString("line\r\n").repeated(5000);
        QTest::newRow("words") << QString("some words ").repeated(5000);
        QTest::newRow("a path") << QString("/a-folder-of-the-path").repeated(190);
    }

    void longTextsStayOnTheScreen() {
        QFETCH(QString, text);
        QtDialogs dialogs;
        whenUp({[&](QWidget *window) {
            auto *box = static_cast<QMessageBox *>(window);
            const QRect screen = box->screen()->availableGeometry();
            QVERIFY(box->width() <= screen.width());
            QVERIFY(box->height() <= screen.height());
            const QString whole = box->detailedText().isEmpty() ? box->text() : box->detailedText();
            QCOMPARE(whole, withLineBreaks(text));
            for (const QAbstractButton *button : box->buttons())
                QVERIFY(box->rect().contains(QRect(button->mapTo(box, QPoint()), button->size())));
            box->button(QMessageBox::Ok)->click();
        }});
        dialogs.message(MessageStyle::OkExclamation, "Veltrona", text);
    }

    void choicesKeepTheirOrder() {
        QtDialogs dialogs;
        const QStringList buttons{"Open another\u2026", "Use the default project", "Quit"};
        whenUp({pressing(Qt::Key_Return)});
        QCOMPARE(dialogs.choose("Veltrona", "text", buttons), 0);
        whenUp({pressing(Qt::Key_Escape)});
        QCOMPARE(dialogs.choose("Veltrona", "text", buttons), 2);
        whenUp({[](QWidget *window) { window->close(); }});
        QCOMPARE(dialogs.choose("Veltrona", "text", buttons), 2);
        whenUp({[&](QWidget *window) {
            for (QPushButton *button : window->findChildren<QPushButton *>())
                if (button->text() == buttons[1])
                    button->click();
        }});
        QCOMPARE(dialogs.choose("Veltrona", "text", buttons), 1);
    }

    void savingAddsTheExtension_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("given");
        QTest::newRow("none") << "a"
                              << "a.vlt";
        QTest::newRow("own") << "a.vlt"
                             << "a.vlt";
        QTest::newRow("other case") << "a.VLt"
                                    << "a.VLt";
        QTest::newRow("another") << "client.2007"
                                 << "client.2007.vlt";
        QTest::newRow("name of the extension") << "vlt"
                                               << "vlt.vlt";
    }

    void savingAddsTheExtension() {
        QFETCH(QString, typed);
        QFETCH(QString, given);
        const QTemporaryDir folder;
        FileDialogSetup setup = newProject;
        setup.initialFolder = folder.path();
        QtDialogs dialogs;
        whenUp({choosing(typed)});
        QCOMPARE(dialogs.saveFile(setup), QDir::toNativeSeparators(folder.filePath(given)));
    }

    void replacingIsAskedForTheNameThatIsWritten() {
        const QTemporaryDir folder;
        QFile older(folder.filePath("a.vlt"));
        QVERIFY(older.open(QFile::WriteOnly));
        FileDialogSetup setup = newProject;
        setup.initialFolder = folder.path();
        QtDialogs dialogs;
        const auto declining = [](QWidget *window) {
            auto *box = qobject_cast<QMessageBox *>(window);
            QVERIFY(box && box->text().contains("a.vlt"));
            pressing(Qt::Key_Return)(window); // No is the default
        };
        const auto accepting = [](QWidget *window) {
            qobject_cast<QMessageBox *>(window)->button(QMessageBox::Yes)->click();
        };
        whenUp({choosing("a"), declining, choosing("b")});
        QCOMPARE(QFileInfo(dialogs.saveFile(setup)).fileName(), QString("b.vlt"));
        whenUp({choosing("a"), accepting});
        QCOMPARE(QFileInfo(dialogs.saveFile(setup)).fileName(), QString("a.vlt"));
        whenUp({choosing("a"), declining, pressing(Qt::Key_Escape)});
        QCOMPARE(dialogs.saveFile(setup), QString());
        setup.confirmsOverwrite = false;
        whenUp({choosing("a")});
        QCOMPARE(QFileInfo(dialogs.saveFile(setup)).fileName(), QString("a.vlt"));
    }

    void openingOffersFilesOfItsKind() {
        const QTemporaryDir folder;
        QFile report(folder.filePath("M\u00FCller's report.xml"));
        QVERIFY(report.open(QFile::WriteOnly));
        const FileDialogSetup setup{"Import a Google Report XML file", "XML files (*.xml)|*.xml",
                                    folder.path(), "xml", true};
        QtDialogs dialogs;
        whenUp({[&](QWidget *window) {
            auto *dialog = static_cast<QFileDialog *>(window);
            QCOMPARE(dialog->windowTitle(), setup.title);
            QCOMPARE(dialog->nameFilters(), QStringList{"XML files (*.xml)"});
            QCOMPARE(dialog->directory().path(), folder.path());
            choosing("M\u00FCller's report")(window);
        }});
        QCOMPARE(dialogs.openFile(setup), QDir::toNativeSeparators(report.fileName()));
        whenUp({pressing(Qt::Key_Escape)});
        QCOMPARE(dialogs.openFile(setup), QString());
    }

    void filters() {
        QCOMPARE(toolkitFilter("Pages (*.htm;*.html)|*.htm;*.html|All|*"),
                 QString("Pages (*.htm *.html);;All (*)"));
        QCOMPARE(toolkitFilter(""), QString());
    }
};

QTEST_MAIN(DialogsTest)
#include "dialogsTest.moc"
