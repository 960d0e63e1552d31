// The tour's steps, in their order.
#include "tour/tour.h"

#include "tour/figures.h"
#include "ui/import/frmWait.h"
#include "ui/report/frmPrev.h"
#include "ui/shell/start.h"
#include "ui/views/dialogs/forms.h"

#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QProgressBar>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>

namespace veltrona::tour {

using namespace Qt::StringLiterals;

namespace {

const QString mainName = u"frmMain"_s;
const QString messageName; // message boxes have no name
const QString losingCampaign = u"Café Corner"_s;
const QString keyword = u"hand coffee grinder"_s;
constexpr int levelsToKeyword = 3; // below a campaign

QWidget *named(const QString &name) {
    QWidget *widget = visibleWidget(name);
    if (!widget)
        qFatal("no widget %s can be seen", qPrintable(name));
    return widget;
}

} // namespace

Tour::Tour(const QString &reportFile, const QString &folder) : m_guide(folder), m_dialogs(m_guide) {
    m_dialogs.reportFile = reportFile;
    m_dialogs.exportFile = m_guide.file(u"report.html"_s);
    m_printing.file = m_guide.file(u"report.pdf"_s);
    services().dialogs = &m_dialogs;
    services().printing = &m_printing;
}

Tour::~Tour() {
    services().printing = nullptr;
    services().dialogs = nullptr;
}

bool Tour::run() {
    planImport();
    planRange();
    planTree();
    planChart();
    planOptions();
    planExport();
    planPrint();
    planLeave();
    m_guide.start();
    const int status = modMain::Main();
    return status == 0 && m_guide.succeeded();
}

frmMain &Tour::window() const {
    return static_cast<frmMain &>(*named(mainName));
}

void Tour::at(const QString &name, std::function<void()> action) {
    m_guide.step(
        name.isEmpty() ? u"a message box"_s : name, [name] { return inFront(name); },
        std::move(action));
}

void Tour::atMain(std::function<void()> action) {
    at(mainName, std::move(action));
}

void Tour::atPopup(std::function<void()> action) {
    m_guide.step(
        u"a menu or list to open"_s, [] { return QApplication::activePopupWidget() != nullptr; },
        std::move(action));
}

void Tour::choose(const QString &combo, const QString &text) {
    atMain([combo] { click(named(combo)); });
    atPopup([text] {
        type(text);
        press(Qt::Key_Return);
    });
    atMain([=, this] {
        const auto *box = static_cast<QComboBox *>(named(combo));
        m_guide.require(box->currentText() == text, combo + u" doesn't show "_s + text);
    });
}

void Tour::clickTool(const QString &name) {
    const auto *bar = window().findChild<QToolBar *>();
    click(bar->widgetForAction(window().findChild<QAction *>(name)));
}

void Tour::clickRoot() {
    const auto *tree = static_cast<QTreeView *>(named(u"treeList"_s));
    click(tree->viewport(), tree->visualRect(tree->model()->index(0, 0)).center());
}

void Tour::walkDownTo(const QString &text) {
    atMain([=, this] {
        const Tree &tree = window().treeList;
        for (int left = tree.Nodes().Count(); left > 0 && tree.SelectedItem()->Text() != text;
             --left)
            press(Qt::Key_Down);
        m_guide.require(tree.SelectedItem()->Text() == text, u"the tree doesn't show "_s + text);
    });
}

/// The picture is taken in the events that the import lets through when its bar is half-way.
void Tour::photographWait() {
    auto *bar = frmWait::instance().findChild<QProgressBar *>();
    QObject::connect(bar, &QProgressBar::valueChanged, &m_guide, [this, bar](int value) {
        if (2 * value < bar->maximum())
            return;
        bar->disconnect(&m_guide);
        QTimer::singleShot(0, &m_guide, [this] {
            m_sawWait = frmWait::instance().isVisible();
            m_guide.takePicture(u"import"_s);
        });
    });
}

void Tour::requireFigures(const QString &where) {
    m_guide.require(hasRows(window().flxStat), where + u": the grid is empty"_s);
    m_guide.require(hasBars(window().mscMain), where + u": the chart is empty"_s);
}

void Tour::keepFile(const QString &path) {
    if (m_guide.require(QFileInfo(path).size() > 0, path + u" is missing or empty"_s))
        m_guide.addFile(path);
}

/// Makes room for all columns. The size counts with the frame, as the layout does, so that neither
/// the frame nor the scale of the screen changes the chart's size.
void Tour::enlarge() {
    constexpr QRect place(10, 10, 1560, 960);
    window().move(place.topLeft());
    window().resize(place.size() - desktop::frameExtent(window()));
}

void Tour::planImport() {
    atMain([this] {
        m_guide.takePicture(u"start"_s);
        enlarge();
    });
    atMain([this] {
        photographWait();
        clickTool(u"Imp"_s);
    });
    atMain([this] {
        m_guide.require(m_sawWait, u"frmWait didn't come up"_s);
        m_guide.require(window().treeList.Nodes().Count() > 1, u"the tree is empty"_s);
        m_guide.takePicture(u"imported"_s);
    });
}

void Tour::planRange() {
    choose(u"cboRange"_s, u"All"_s);
    atMain([this] {
        requireFigures(u"The whole account"_s);
        m_gridText = gridTable(window());
        m_guide.saveText(u"grid.txt"_s, m_gridText);
        m_guide.takePicture(u"all"_s);
        clickRoot();
    });
}

void Tour::planTree() {
    walkDownTo(losingCampaign);
    atMain([this] {
        requireFigures(u"The campaign"_s);
        m_guide.takePicture(u"campaign"_s);
    });
    for (int level = 0; level < levelsToKeyword; ++level) {
        atMain([] {
            press(Qt::Key_Right);
            press(Qt::Key_Down);
        });
    }
    walkDownTo(keyword);
    atMain([this] {
        requireFigures(u"The keyword"_s);
        m_guide.takePicture(u"keyword"_s);
    });
}

void Tour::planChart() {
    choose(u"cboLeft"_s, u"Costs"_s);
    choose(u"cboGroup"_s, u"Months"_s);
    atMain([this] {
        requireFigures(u"The costs by months"_s);
        m_guide.takePicture(u"months"_s);
    });
}

void Tour::planOptions() {
    atMain([] { press(Qt::Key_T, Qt::AltModifier); });
    atPopup([this] {
        m_guide.takePicture(u"menu"_s);
        press(Qt::Key_O);
    });
    at(u"frmOptions"_s, [] {
        press(Qt::Key_Space); // the colours of the grid, and with them those of the export
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        press(Qt::Key_Space); // the colours of the print
    });
    at(u"frmOptions"_s, [this] {
        m_guide.takePicture(u"options"_s);
        press(Qt::Key_Return);
    });
    atMain([this] { clickRoot(); });
    atMain([this] {
        m_guide.require(hasRedRow(window().flxStat), u"no row is red"_s);
        m_guide.takePicture(u"colours"_s);
    });
}

void Tour::planExport() {
    atMain([this] { clickTool(u"Exp"_s); });
    at(u"frmOutput"_s, [] { click(named(u"comBrowse"_s)); });
    at(u"frmOutput"_s, [this] {
        const auto *name = static_cast<QLineEdit *>(named(u"txtFilename"_s));
        m_guide.require(name->text() == m_dialogs.exportFile, u"the file name is lost"_s);
        m_guide.takePicture(u"export"_s);
        m_dialogs.awaited = u"Report created!"_s;
        press(Qt::Key_R, Qt::AltModifier);
    });
    at(messageName, [this] {
        m_guide.takePicture(u"question"_s);
        press(Qt::Key_N, Qt::AltModifier);
    });
    atMain([this] {
        keepFile(m_dialogs.exportFile);
        keepFile(m_guide.file(u"graph.jpg"_s));
    });
}

void Tour::planPrint() {
    atMain([this] { clickTool(u"Prn"_s); });
    at(u"frmOutput"_s, [this] {
        m_guide.takePicture(u"print"_s);
        press(Qt::Key_Return);
    });
    m_guide.step(
        u"the preview"_s, [] { return inFront(u"frmPrev"_s) && frmPrev::instance().isLoaded(); },
        [this] {
            m_guide.takePicture(u"preview"_s);
            press(Qt::Key_P, Qt::AltModifier);
        });
    m_guide.step(
        u"the print"_s,
        [this] { return inFront(u"frmPrev"_s) && QFileInfo(m_printing.file).size() > 0; },
        [this] {
            keepFile(m_printing.file);
            press(Qt::Key_C, Qt::AltModifier);
        });
}

void Tour::planLeave() {
    atMain([] { press(Qt::Key_H, Qt::AltModifier); });
    atPopup([] { press(Qt::Key_Return); });
    at(u"frmAbout"_s, [this] {
        m_guide.takePicture(u"about"_s);
        press(Qt::Key_Return);
    });
    atMain([] { press(Qt::Key_F, Qt::AltModifier); });
    atPopup([] { press(Qt::Key_X); });
}

} // namespace veltrona::tour
