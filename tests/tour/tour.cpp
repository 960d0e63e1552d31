// The guided tour through the real main window, as a program of its own: the steps, and what must
// be seen at each. It needs a display with a window manager and leaves the settings and projects of
// the user alone. The file dialogs and the system's print dialog are answered here.
//
// Usage: veltrona_tour REPORT FOLDER    imports the report, leaves pictures and files in the folder
#include "tour/guide.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "ui/import/frmWait.h"
#include "ui/report/frmPrev.h"
#include "ui/report/printing.h"
#include "ui/shell/frmMain.h"
#include "ui/shell/start.h"
#include "ui/views/controls/elidedLabel.h"
#include "ui/views/dialogs/qtDialogs.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QLineEdit>
#include <QPrinter>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>

#include <algorithm>

namespace veltrona::tour {

namespace {

const QString mainName = "frmMain";
const QString messageName; // message boxes have no name

class TourDialogs : public QtDialogs {
public:
    QString reportFile; // is opened
    QString exportFile; // is saved

    QString openFile(const FileDialogSetup &) override { return reportFile; }
    QString saveFile(const FileDialogSetup &) override { return exportFile; }
};

class TourPrinting : public Printing {
public:
    QString file;

    Paper paper() override { return a4Paper(); }
    bool isEnabled() override { return true; }
    void print(const ReportDocument &report, QWidget *) override {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file);
        printReport(report, printer);
    }
};

frmMain &window() {
    return static_cast<frmMain &>(*named(mainName));
}

/// Caption, period and grid: a line for each row, names to the left and numbers to the right.
QString gridTable() {
    const Grid &grid = window().flxStat;
    QStringList lines(grid.Rows());
    for (int col = 0; col < gridColumn::Shown; ++col) {
        qsizetype width = 0;
        for (int row = 0; row < grid.Rows(); ++row)
            width = std::max(width, grid.text(row, col).size());
        for (int row = 0; row < grid.Rows(); ++row) {
            const QString text = grid.TextMatrix(row, col);
            lines[row] += col == gridColumn::Name ? text.leftJustified(width)
                                                  : "  " + text.rightJustified(width);
        }
    }
    const auto day = [](const char *picker) {
        return static_cast<QDateEdit *>(named(picker))->date().toString(Qt::ISODate);
    };
    QString table = static_cast<ElidedLabel *>(named("lblSum"))->fullText() + ", " +
                    day("dtpStart") + " to " + day("dtpEnd") + "\n\n";
    for (QString &line : lines)
        table += line.remove(QRegularExpression(" +$")) + u'\n';
    return table;
}

class Tour {
public:
    Tour(const QString &reportFile, const QString &folder) : m_guide(folder) {
        m_dialogs.reportFile = reportFile;
        m_dialogs.exportFile = m_guide.file("report.html");
        m_printing.file = m_guide.file("report.pdf");
    }

    /// Starts the program, leads through it and ends it; whether all went well.
    bool run() {
        services().dialogs = &m_dialogs;
        services().printing = &m_printing;
        planImport();
        planTree();
        planOptions();
        planReports();
        planLeave();
        m_guide.start();
        return modMain::Main() == 0 && m_guide.succeeded();
    }
    /// The statistics of the whole account over the whole time.
    QString gridText() const { return m_gridText; }

private:
    // Steps that wait for a window to be in front, or for a menu or list to be open.
    void at(const QString &name, const std::function<void()> &action) {
        m_guide.step(
            name.isEmpty() ? "a message box" : name, [name] { return inFront(name); }, action);
    }
    void atMain(const std::function<void()> &action) { at(mainName, action); }
    void atPopup(const std::function<void()> &action) {
        m_guide.step(
            "a menu or list to open", [] { return QApplication::activePopupWidget() != nullptr; },
            action);
    }
    void atMainWithFigures(const QString &picture) {
        atMain([=, this] {
            const Grid &grid = window().flxStat;
            const auto stands = [](const ChartRow &bar) { return !bar.isNull && bar.value > 0; };
            m_guide.require(gridRow::dataRows(grid.Rows()) > 0 &&
                                std::ranges::any_of(window().mscMain.DataGrid().rows(), stands),
                            picture + ": the figures are missing");
            m_guide.takePicture(picture);
        });
    }

    /// Chooses from a drop-down list by clicking it open and typing.
    void choose(const QString &combo, const QString &text) {
        atMain([combo] { click(named(combo)); });
        atPopup([text] {
            for (const QChar letter : text)
                QTest::keyClick(QGuiApplication::focusWindow(), letter.toLatin1());
            press(Qt::Key_Return);
        });
        atMain([=, this] {
            m_guide.require(static_cast<QComboBox *>(named(combo))->currentText() == text,
                            combo + " doesn't show " + text);
        });
    }
    void clickTool(const QString &name) {
        atMain([name] {
            const auto *bar = window().findChild<QToolBar *>();
            click(bar->widgetForAction(window().findChild<QAction *>(name)));
        });
    }
    void clickRoot() {
        atMain([] {
            const auto *tree = static_cast<QTreeView *>(named("treeList"));
            click(tree->viewport(), tree->visualRect(tree->model()->index(0, 0)).center());
        });
    }
    /// Moves down in the tree with the arrow key.
    void walkDownTo(const QString &text) {
        atMain([=, this] {
            const Tree &tree = window().treeList;
            for (int left = tree.Nodes().Count(); left > 0 && tree.SelectedItem()->Text() != text;
                 --left)
                press(Qt::Key_Down);
            m_guide.require(tree.SelectedItem()->Text() == text, "the tree doesn't show " + text);
        });
    }
    void requireFile(const QString &path) {
        m_guide.require(QFileInfo(path).size() > 0, path + " is missing or empty");
    }

    /// The picture is taken in the events that the import lets through when its bar is half-way.
    void photographWait() {
        auto *bar = frmWait::instance().findChild<QProgressBar *>();
        QObject::connect(bar, &QProgressBar::valueChanged, &m_guide, [this, bar](int value) {
            if (2 * value < bar->maximum())
                return;
            bar->disconnect(&m_guide);
            QTimer::singleShot(0, &m_guide, [this] {
                m_sawWait = frmWait::instance().isVisible();
                m_guide.takePicture("import");
            });
        });
    }

    void planImport() {
        atMain([this] {
            m_guide.takePicture("start");
            // Makes room for all columns. The size counts with the frame, as the layout does, so
            // that neither the frame nor the scale of the screen changes the chart's size.
            constexpr QRect place(10, 10, 1560, 960);
            window().move(place.topLeft());
            window().resize(place.size() - desktop::frameExtent(window()));
            photographWait();
        });
        clickTool("Imp");
        atMain([this] {
            m_guide.require(m_sawWait && window().treeList.Nodes().Count() > 1,
                            "the report isn't imported");
            m_guide.takePicture("imported");
        });
        choose("cboRange", "All");
        atMainWithFigures("all");
        atMain([this] {
            m_gridText = gridTable();
            QFile out(m_guide.file("grid.txt"));
            m_guide.require(out.open(QIODevice::WriteOnly) && out.write(m_gridText.toUtf8()) > 0,
                            "can't write grid.txt");
        });
    }

    void planTree() {
        constexpr int levelsToKeyword = 3; // below a campaign
        clickRoot();
        walkDownTo("Café Corner");
        atMainWithFigures("campaign");
        for (int level = 0; level < levelsToKeyword; ++level)
            atMain([] {
                press(Qt::Key_Right);
                press(Qt::Key_Down);
            });
        walkDownTo("hand coffee grinder");
        atMainWithFigures("keyword");
        choose("cboLeft", "Costs");
        choose("cboGroup", "Months");
        atMainWithFigures("months");
    }

    void planOptions() {
        atMain([] { press(Qt::Key_T, Qt::AltModifier); });
        atPopup([this] {
            m_guide.takePicture("menu");
            press(Qt::Key_O);
        });
        at("frmOptions", [] {
            // The colours of the grid, and with them those of the export; those of the print.
            for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space})
                press(key);
        });
        at("frmOptions", [this] {
            m_guide.takePicture("options");
            press(Qt::Key_Return);
        });
        clickRoot();
        atMainWithFigures("colours");
        atMain([this] { m_guide.require(window().flxStat.isLoss(2), "no row is red"); });
    }

    void planReports() {
        clickTool("Exp");
        at("frmOutput", [] { click(named("comBrowse")); });
        at("frmOutput", [this] {
            const QString name = static_cast<QLineEdit *>(named("txtFilename"))->text();
            m_guide.require(name == m_dialogs.exportFile, "the file name is lost");
            m_guide.takePicture("export");
            press(Qt::Key_R, Qt::AltModifier);
        });
        at(messageName, [this] {
            m_guide.takePicture("question");
            press(Qt::Key_N, Qt::AltModifier);
        });
        atMain([this] {
            requireFile(m_dialogs.exportFile);
            requireFile(m_guide.file("graph.jpg"));
        });
        clickTool("Prn");
        at("frmOutput", [this] {
            m_guide.takePicture("print");
            press(Qt::Key_Return);
        });
        at("frmPrev", [this] {
            m_guide.require(frmPrev::instance().isLoaded(), "the preview is empty");
            m_guide.takePicture("preview");
            press(Qt::Key_P, Qt::AltModifier);
        });
        at("frmPrev", [this] {
            requireFile(m_printing.file);
            press(Qt::Key_C, Qt::AltModifier);
        });
    }

    void planLeave() {
        atMain([] { press(Qt::Key_H, Qt::AltModifier); });
        atPopup([] { press(Qt::Key_Return); });
        at("frmAbout", [this] {
            m_guide.takePicture("about");
            press(Qt::Key_Return);
        });
        atMain([] { press(Qt::Key_F, Qt::AltModifier); });
        atPopup([] { press(Qt::Key_X); });
    }

    Guide m_guide;
    TourDialogs m_dialogs;
    TourPrinting m_printing;
    QString m_gridText;
    bool m_sawWait = false;
};

} // namespace

} // namespace veltrona::tour

int main(int argc, char **argv) {
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath("config").toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.filePath("data").toLocal8Bit());
    veltrona::Application application(argc, argv);
    // On a busy machine the letters typed into a list come far apart.
    QApplication::setKeyboardInputInterval(10'000);
    const QStringList arguments = QCoreApplication::arguments();
    QDir folder(QDir(arguments.value(2)).absolutePath());
    if (arguments.size() != 3 || !folder.mkpath(".")) {
        QTextStream(stderr) << "usage: veltrona_tour REPORT FOLDER\n";
        return 2;
    }
    // Nothing of an earlier tour stays, so that what lies there is what this one has made.
    const QStringList made = {"[0-9][0-9]-*.png", "grid.txt", "graph.jpg", "report.html",
                              "report.pdf"};
    for (const QString &old : folder.entryList(made, QDir::Files))
        folder.remove(old);
    veltrona::tour::Tour tour(QDir().absoluteFilePath(arguments.at(1)), folder.path());
    const bool succeeded = tour.run();
    QTextStream out(stdout);
    for (const QString &name : folder.entryList(made, QDir::Files))
        out << folder.filePath(name) << '\n';
    out << '\n' << tour.gridText();
    return succeeded ? 0 : 1;
}
