// frmMain: the construction of the window, and its layout.
#include "core/analysis/chart/chartSeries.h"
#include "core/analysis/dateRanges.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/base/product.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/shell/layout.h"
#include "ui/shell/frmMain.h"
#include "ui/views/controls/chartView.h"
#include "ui/views/controls/comboBoxView.h"
#include "ui/views/controls/datePickerView.h"
#include "ui/views/controls/elidedLabel.h"
#include "ui/views/controls/gridView.h"
#include "ui/views/controls/treeView.h"
#include "ui/views/dialogs/forms.h"
#include "ui/views/icons.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QResizeEvent>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>

namespace veltrona {

namespace {

struct ToolButton {
    const char *key;
    const char *caption;
    const char *picture;
};

// The blanks behind the captions are part of them: they keep the buttons apart.
constexpr ToolButton toolButtons[] = {
    {"Imp", "Import  ", "import"},
    {"Exp", "Export  ", "export"},
    {"Prn", "Print    ", "print"},
};

/// Twips to device-independent pixels, as a factor.
double pixelsPerTwip(const TwipScale &scale) {
    return scale.ratio() / twipsPerPixel;
}

} // namespace

frmMain::frmMain()
    : flxStat(gridColumn::Count, gridColumn::Shown), cboRange(captionsOf(rangePresets)),
      cboLeft(chartMetrics()), cboGroup(captionsOf(chartUnits)), m_scale(font(), measuredLabels) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(productName);
    cboLeft.Tag = QStringLiteral("first");
    cboGroup.Tag = QStringLiteral("first");
    buildCommands();
    buildToolBar();
    buildStatusBar();
    buildFrames();
    connectControls();
    // The fields in the window would take the files' names as text.
    for (QLineEdit *field : findChildren<QLineEdit *>())
        field->setAcceptDrops(false);
    setAcceptDrops(true);
    // The menu key is the toolkit's, but not this one.
    auto *menuKeys = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F10), this);
    connect(menuKeys, &QShortcut::activated, this, &frmMain::openContextMenu);
    applyDesignSize();
}

frmMain::~frmMain() {
    // The views go first: they look at the controls' data, which are members of this window.
    delete takeCentralWidget();
}

void frmMain::addMenu(const char *name, const QString &title,
                      std::initializer_list<MenuEntry> entries) {
    QMenu *menu = menuBar()->addMenu(title);
    menu->setObjectName(QLatin1String(name));
    for (const MenuEntry &entry : entries) {
        QAction *action = menu->addAction(QString::fromLatin1(entry.caption));
        action->setObjectName(QLatin1String(entry.name));
        // The platform must not move an entry elsewhere because of its caption.
        action->setMenuRole(QAction::NoRole);
        connect(action, &QAction::triggered, this,
                [this, handler = entry.handler] { runCommand([&] { (this->*handler)(); }); });
    }
}

void frmMain::buildCommands() {
    addMenu("mnuFile", QStringLiteral("&File"),
            {
                {"mnuNew", "&New Database", &frmMain::mnuNew_Click},
                {"mnuOpen", "&Open Database", &frmMain::mnuOpen_Click},
                {"mnuPRint", "&Print", &frmMain::mnuPRint_Click},
                {"mnuImport", "&Import Report", &frmMain::mnuImport_Click},
                {"mnuExport", "&Export", &frmMain::mnuExport_Click},
                {"mnuExit", "E&xit", &frmMain::mnuExit_Click},
            });
    addMenu("mnuTools", QStringLiteral("&Tools"),
            {
                {"mnuClean", "&Clean Database", &frmMain::mnuClean_Click},
                {"mnuOptions", "&Options", &frmMain::mnuOptions_Click},
            });
    addMenu("mnuHelp", QStringLiteral("&Help"),
            {
                {"mnuAbout", "About...", &frmMain::mnuAbout_Click},
            });
}

void frmMain::runCommand(const std::function<void()> &command) {
    // Assistive software presses buttons and entries also behind a modal window.
    if (QApplication::activeModalWidget())
        return;
    // A date that is typed but not yet confirmed counts for the command that follows.
    m_startView->finishEdit();
    m_endView->finishEdit();
    filtered(command);
}

void frmMain::buildToolBar() {
    Toolbar1 = addToolBar(QStringLiteral("Toolbar"));
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    Toolbar1->setMovable(false);
    // The toolkit's own context menu, on the menu bar too, could take the tool bar away.
    setContextMenuPolicy(Qt::NoContextMenu);
    Toolbar1->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const ToolButton &button : toolButtons) {
        QAction *action = Toolbar1->addAction(icon(QString::fromLatin1(button.picture)),
                                              QString::fromLatin1(button.caption));
        action->setObjectName(QLatin1String(button.key));
        action->setIconText(action->text()); // of itself it would drop the blanks
        action->setToolTip(action->text().trimmed());
        connect(action, &QAction::triggered, this, [this, key = QString::fromLatin1(button.key)] {
            runCommand([&] { Toolbar1_ButtonClick(key); });
        });
    }
}

void frmMain::buildStatusBar() {
    statusBar()->setObjectName(QStringLiteral("sbMain"));
    auto *panel = new QLabel(QStringLiteral("Done."));
    panel->setTextFormat(Qt::PlainText);
    // A permanent panel stays when the menu clears the bar's passing messages.
    statusBar()->addPermanentWidget(panel, 1);
}

QFrame *frmMain::addFrame(const char *name) {
    auto *frame = new QFrame(centralWidget());
    frame->setObjectName(QLatin1String(name));
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    return frame;
}

QLabel *frmMain::addLabel(QFrame *frame, const char *name, QWidget *buddy) {
    auto *label = desktop::makeControl<QLabel>(mainWindowDesign, name, frame);
    label->setBuddy(buddy);
    return label;
}

void frmMain::buildFrames() {
    setCentralWidget(new QWidget(this));
    Frame1 = addFrame("Frame1");
    Frame2 = addFrame("Frame2");
    Frame3 = addFrame("Frame3");

    m_treeView = new TreeView(treeList, Frame1);
    m_treeView->setObjectName(QStringLiteral("treeList"));
    m_treeView->setAccessibleName(QStringLiteral("Account"));
    buildFilterFrame();
    buildChartFrame();

    // The order in which Tab walks: the tree, the period, the figures, the chart.
    QWidget *const order[] = {m_treeView, m_startView, m_endView,    m_rangeView,
                              m_gridView, m_chartView, m_metricView, m_groupView};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void frmMain::buildFilterFrame() {
    m_startView = new DatePickerView(dtpStart, Frame2);
    m_startView->setObjectName(QStringLiteral("dtpStart"));
    m_endView = new DatePickerView(dtpEnd, Frame2);
    m_endView->setObjectName(QStringLiteral("dtpEnd"));
    m_rangeView = new ComboBoxView(cboRange, Frame2);
    m_rangeView->setObjectName(QStringLiteral("cboRange"));
    m_gridView = new GridView(flxStat, Frame2);
    m_gridView->setObjectName(QStringLiteral("flxStat"));
    m_gridView->setAccessibleName(QStringLiteral("Statistics"));
    lblStart = addLabel(Frame2, "lblStart", m_startView);
    lblEnd = addLabel(Frame2, "lblEnd", m_endView);
    lblRange = addLabel(Frame2, "lblRange", m_rangeView);
    lblSum = new ElidedLabel(Frame2);
    lblSum->setObjectName(QStringLiteral("lblSum"));
    lblSum->setFullText(QLatin1String(designedIn(mainWindowDesign, "lblSum").caption));
}

void frmMain::buildChartFrame() {
    m_chartView = new ChartView(mscMain, Frame3);
    m_chartView->setObjectName(QStringLiteral("mscMain"));
    m_metricView = new ComboBoxView(cboLeft, Frame3);
    m_metricView->setObjectName(QStringLiteral("cboLeft"));
    m_groupView = new ComboBoxView(cboGroup, Frame3);
    m_groupView->setObjectName(QStringLiteral("cboGroup"));
    lblLeft = addLabel(Frame3, "lblLeft", m_metricView);
    lblGroup = addLabel(Frame3, "lblGroup", m_groupView);
    // A place for the picture on its way to the file; nothing for the user's eyes.
    picChart = new QLabel(Frame3);
    picChart->setObjectName(QStringLiteral("picChart"));
    picChart->hide();
}

void frmMain::connectControls() {
    treeList.onNodeClick = [this](TreeNode *node) { filtered([&] { treeList_NodeClick(node); }); };
    flxStat.onRowChosen = [this](int row) { filtered([&] { openRow(row); }); };
    flxStat.columnNoteOf = columnNote;
    flxStat.notesOf = [this](int row, int col) -> QStringList {
        try {
            return figureNotes(row, col);
        } catch (const Failure &) {
            return {}; // the next click tells it
        }
    };
    // A preset set by loadDefaults runs inside a handler that is filtered already, and so does a
    // picker's "Custom"; what comes from the user's own choice ends here.
    cboRange.onClick = [this] { filtered([&] { cboRange_Click(); }); };
    cboLeft.onClick = [this] { filtered([&] { cboLeft_Click(); }); };
    cboGroup.onClick = [this] { filtered([&] { cboGroup_Click(); }); };
    dtpStart.onChange = [this] { filtered([&] { dtpStart_Change(); }); };
    dtpEnd.onChange = [this] { filtered([&] { dtpEnd_Change(); }); };
}

float frmMain::textWidth(const QString &text) const {
    const double pixels = QFontMetricsF(m_gridView->font()).horizontalAdvance(text);
    return static_cast<float>(pixels / pixelsPerTwip(m_scale));
}

/// Fits everything to the font in force, which the twip follows.
void frmMain::applyScale() {
    m_scale = TwipScale(font(), measuredLabels);
    m_gridView->setPixelsPerTwip(pixelsPerTwip(m_scale));
    const int picture = 2 * smallIconPixels(fontMetrics());
    Toolbar1->setIconSize({picture, picture});
    for (QLabel *label : {lblStart, lblEnd, lblRange, lblLeft, lblGroup})
        desktop::placeControl(*label, designed(label->objectName().toStdString()), m_scale);
    picChart->setGeometry(m_scale.toPixels(designed("picChart")));
}

/// The window never gets smaller than the layout can serve.
void frmMain::applyMinimumSize() {
    setMinimumSize(
        QSize(m_scale.toPixels(veltrona::minimumWidth), m_scale.toPixels(veltrona::minimumHeight)) -
        desktop::frameExtent(*this));
}

void frmMain::applyDesignSize() {
    applyScale();
    applyMinimumSize();
    const QRect available = screen()->availableGeometry();
    const QSize frame = desktop::frameExtent(*this);
    const QSize wanted(m_scale.toPixels(designInnerWidth),
                       m_scale.toPixels(designInnerHeight) + menuBar()->sizeHint().height());
    resize(wanted.boundedTo(available.size() - frame));
    QRect outer(QPoint(), size() + frame);
    outer.moveCenter(available.center());
    // On a screen too small for the window, title bar and menu stay in reach.
    move(qMax(outer.left(), available.left()), qMax(outer.top(), available.top()));
}

void frmMain::Form_Resize() {
    if (isMinimized())
        return;
    applyMinimumSize();
    const QSize frame = desktop::frameExtent(*this);
    WindowSizes sizes;
    sizes.width = m_scale.toTwips(width() + frame.width());
    sizes.height = m_scale.toTwips(height() + frame.height());
    sizes.statusBarHeight = m_scale.toTwips(statusBar()->height());
    sizes.toolBarHeight = m_scale.toTwips(Toolbar1->height());
    sizes.chromeWidth = m_scale.toTwips(frame.width());
    sizes.chromeHeight = m_scale.toTwips(frame.height() + menuBar()->height());
    arrangeControls(arrangeWindow(sizes));
}

void frmMain::arrangeControls(const WindowLayout &layout) {
    // The rules count the frames' tops from below the menu bar, the central widget begins below the
    // tool bar.
    const int toolBar = centralWidget()->y() - menuBar()->height();
    const std::pair<QWidget *, TwipRect> frames[] = {
        {Frame1, layout.Frame1}, {Frame2, layout.Frame2}, {Frame3, layout.Frame3}};
    for (const auto &[frame, rect] : frames)
        frame->setGeometry(m_scale.toPixels(rect).translated(0, -toolBar));

    TwipRect caption = designed("lblSum");
    caption.width = layout.Frame2.width - 2 * caption.left;
    const std::pair<QWidget *, TwipRect> filling[] = {
        {m_treeView, layout.treeList},
        {lblSum, caption},
        {m_gridView, layout.flxStat},
        {m_chartView, layout.mscMain},
    };
    for (const auto &[widget, rect] : filling)
        widget->setGeometry(m_scale.toPixels(rect));

    const std::pair<QWidget *, TwipRect> fitting[] = {
        {m_startView, layout.dtpStart}, {m_endView, layout.dtpEnd},
        {m_rangeView, layout.cboRange}, {lblLeft, layout.lblLeft},
        {m_metricView, layout.cboLeft}, {lblGroup, layout.lblGroup},
        {m_groupView, layout.cboGroup},
    };
    for (const auto &[widget, rect] : fitting)
        desktop::placeControl(*widget, rect, m_scale);
}

void frmMain::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

/// The first sign that the window manager has put its frame around the window, whose size counts.
void frmMain::moveEvent(QMoveEvent *event) {
    QMainWindow::moveEvent(event);
    Form_Resize();
}

void frmMain::showEvent(QShowEvent *event) {
    QMainWindow::showEvent(event);
    Form_Resize();
}

void frmMain::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    if (!desktop::changesSizes(*event) || !m_groupView)
        return;
    applyScale();
    Form_Resize();
}

bool frmMain::event(QEvent *event) {
    const bool handled = QMainWindow::event(event);
    // Another font gives the bars another height only now.
    if (event->type() == QEvent::LayoutRequest && m_groupView)
        Form_Resize();
    return handled;
}

} // namespace veltrona
