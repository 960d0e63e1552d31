// frmMain: its construction, its layout, and the events that it listens to.
#include "ui/shell/frmMain.h"

#include "core/design/product.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"
#include "core/shell/projectSession.h"
#include "ui/shell/droppedFiles.h"
#include "ui/shell/frmOptions.h"
#include "ui/shell/mainSurface.h"
#include "ui/views/dialogs/forms.h"
#include "ui/views/icons.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
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

// The blanks at the ends of the captions are part of them: they keep the buttons apart.
constexpr ToolButton toolButtons[] = {
    {"Imp", "Import  ", "import"},
    {"Exp", "Export  ", "export"},
    {"Prn", "Print    ", "print"},
};

/// Takes files as copies: they stay where they are, whatever action the source prefers.
void takeAsCopy(QDropEvent &event, bool takes) {
    if (takes && !QApplication::activeModalWidget() &&
        event.possibleActions().testFlag(Qt::CopyAction)) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
    } else {
        event.ignore();
    }
}

} // namespace

frmMain::frmMain()
    : m_surface(new MainSurface(*this)), m_scroll(new QScrollArea),
      m_view(*this, m_surface->screen()) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(productName);
    buildCommands();
    buildToolBar();
    buildStatusBar();
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidget(m_surface);
    m_scroll->installEventFilter(this);
    setCentralWidget(m_scroll);
    setAcceptDrops(true);
    // Qt opens context menus by the menu key, but not by Shift+F10.
    auto *menuKeys = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F10), this);
    connect(menuKeys, &QShortcut::activated, this, &frmMain::openContextMenu);
    applyDesignSize();
}

frmMain::~frmMain() {
    // The surface goes first: it reads the controls, which are members of this window.
    delete takeCentralWidget();
}

bool frmMain::Form_Load() {
    modMain::initDataFolder();
    const QString path = rememberedProject();
    modMain::session() = path.count(u' ') == path.size()
                             ? ProjectSession::at(defaultProjectPath(modMain::DataFolder))
                             : ProjectSession::at(path);
    frmOptions::instance().load();
    return openFirstProject();
}

void frmMain::Form_Unload() {
    if (m_state == State::Unloaded)
        return;
    m_state = State::Unloaded;
    modMain::session().release();
    modMain::ExitFlag = true;
    QApplication::quit();
}

void frmMain::buildCommands() {
    // Without a handler, the menu that the entries below it belong to.
    const struct {
        const char *name;
        const char *caption;
        void (frmMain::*handler)();
    } entries[] = {
        {"mnuFile", "&File", nullptr},
        {"mnuNew", "&New Database", &frmMain::mnuNew_Click},
        {"mnuOpen", "&Open Database", &frmMain::mnuOpen_Click},
        {"mnuPRint", "&Print", &frmMain::mnuPRint_Click},
        {"mnuImport", "&Import Report", &frmMain::mnuImport_Click},
        {"mnuExport", "&Export", &frmMain::mnuExport_Click},
        {"mnuExit", "E&xit", &frmMain::mnuExit_Click},
        {"mnuTools", "&Tools", nullptr},
        {"mnuClean", "&Clean Database", &frmMain::mnuClean_Click},
        {"mnuOptions", "&Options", &frmMain::mnuOptions_Click},
        {"mnuHelp", "&Help", nullptr},
        {"mnuAbout", "About...", &frmMain::mnuAbout_Click},
    };
    QMenu *menu = nullptr;
    for (const auto &entry : entries) {
        if (!entry.handler) {
            menu = menuBar()->addMenu(QString::fromLatin1(entry.caption));
            menu->setObjectName(QLatin1String(entry.name));
            continue;
        }
        QAction *action = menu->addAction(QString::fromLatin1(entry.caption));
        action->setObjectName(QLatin1String(entry.name));
        // The platform must not move an entry elsewhere because of its caption.
        action->setMenuRole(QAction::NoRole);
        connect(action, &QAction::triggered, this,
                [this, handler = entry.handler] { runCommand([&] { (this->*handler)(); }); });
    }
}

void frmMain::buildToolBar() {
    Toolbar1 = addToolBar(QStringLiteral("Toolbar"));
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    Toolbar1->setMovable(false);
    // Qt's own context menu, on the menu bar too, could take the tool bar away.
    setContextMenuPolicy(Qt::NoContextMenu);
    Toolbar1->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const ToolButton &button : toolButtons) {
        QAction *action = Toolbar1->addAction(icon(QString::fromLatin1(button.picture)),
                                              QString::fromLatin1(button.caption));
        action->setObjectName(QLatin1String(button.key));
        action->setIconText(action->text()); // by default without the blanks
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

void frmMain::runCommand(const std::function<void()> &command) {
    // Assistive software presses buttons and entries also while a modal window is open.
    if (QApplication::activeModalWidget())
        return;
    m_surface->finishEdits();
    filtered(command);
}

void frmMain::openContextMenu() {
    QWidget *view = focusWidget();
    if (!view)
        return;
    const QPoint at = view->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, view->mapToGlobal(at));
    QCoreApplication::sendEvent(view, &event);
}

void frmMain::applyScale() {
    m_surface->applyScale(font());
    const int icon = smallIconPixels(fontMetrics());
    Toolbar1->setIconSize({2 * icon, 2 * icon});
    // The layout's frames leave room for bars as high as designed, which small letters don't fill.
    const TwipScale &scale = m_surface->scale();
    const bool isLarge = icon > usualIconPixels;
    Toolbar1->setMinimumHeight(isLarge ? scale.toPixels(designed("Toolbar1").height) : 0);
    statusBar()->setMinimumHeight(isLarge ? scale.toPixels(designed("sbMain").height) : 0);
}

void frmMain::refit() {
    applyScale();
    Form_Resize();
}

/// The surface never gets smaller than the layout can serve; nor does the window, unless the screen
/// is smaller still and the surface scrolls in it.
void frmMain::applyMinimumSize() {
    const TwipScale &scale = m_surface->scale();
    const QSize frame = desktop::frameExtent(*this);
    const QSize least =
        QSize(scale.toPixels(veltrona::minimumWidth), scale.toPixels(veltrona::minimumHeight)) -
        frame;
    m_surface->setMinimumSize(least - (size() - m_scroll->size()));
    setMinimumSize(least.boundedTo(screen()->availableSize() - frame));
}

void frmMain::applyDesignSize() {
    applyScale();
    applyMinimumSize();
    const TwipScale &scale = m_surface->scale();
    const QRect available = screen()->availableGeometry();
    const QSize frame = desktop::frameExtent(*this);
    const QSize wanted(scale.toPixels(designInnerWidth),
                       scale.toPixels(designInnerHeight) + menuBar()->sizeHint().height());
    resize(wanted.boundedTo(available.size() - frame));
    QRect outer(QPoint(), size() + frame);
    outer.moveCenter(available.center());
    move(outer.topLeft());
}

/// As large as the scroll area shows beside its bars, and not below the minimum.
QSize frmMain::surfaceSize() const {
    const QSize least = m_surface->minimumSize();
    const int bar = m_scroll->verticalScrollBar()->sizeHint().width();
    QSize room = m_scroll->maximumViewportSize();
    const bool isTooLow = least.height() > room.height();
    if (isTooLow)
        room.rwidth() -= bar;
    if (least.width() > room.width()) {
        room.rheight() -= bar;
        if (!isTooLow && least.height() > room.height())
            room.rwidth() -= bar;
    }
    return room.expandedTo(least);
}

void frmMain::Form_Resize() {
    if (isMinimized())
        return;
    applyMinimumSize();
    m_surface->resize(surfaceSize());
    const QSize frame = desktop::frameExtent(*this);
    const TwipScale &scale = m_surface->scale();
    WindowSizes sizes;
    // The window as large as the whole surface needs it, which may scroll.
    const QSize whole = size() - m_scroll->size() + m_surface->size() + frame;
    sizes.width = scale.toTwips(whole.width());
    sizes.height = scale.toTwips(whole.height());
    const QStatusBar &status = *statusBar();
    sizes.statusBarHeight = scale.toTwips(qMin(status.height(), status.sizeHint().height()));
    sizes.toolBarHeight = scale.toTwips(Toolbar1->height());
    sizes.chromeWidth = scale.toTwips(frame.width());
    sizes.chromeHeight = scale.toTwips(frame.height() + menuBar()->height());
    m_surface->arrange(arrangeWindow(sizes), m_scroll->y() - menuBar()->height());
}

bool frmMain::event(QEvent *event) {
    const bool handled = QMainWindow::event(event);
    if (!centralWidget())
        return handled;
    switch (event->type()) {
    case QEvent::StyleChange: // the controls take it over after the window
        QMetaObject::invokeMethod(this, &frmMain::refit, Qt::QueuedConnection);
        break;
    case QEvent::FontChange:
        refit();
        break;
    case QEvent::LayoutRequest: // another font gives the bars another height only now
    case QEvent::Move:          // the first sign of the window manager's frame, whose size counts
    case QEvent::Resize:
        Form_Resize();
        break;
    case QEvent::Show:
        Form_Resize();
        m_readAhead.start();
        break;
    case QEvent::WindowActivate: // the user comes back from a program that may have changed the
                                 // file
        m_readAhead.start();
        break;
    default:
        break;
    }
    return handled;
}

/// The bars may take another height after the window has its size.
bool frmMain::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_scroll && event->type() == QEvent::Resize)
        Form_Resize();
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::closeEvent(QCloseEvent *event) {
    if (m_state == State::Importing) {
        // The row loader stops at its next step; importReport then closes the window.
        services().endRequested = true;
        event->ignore();
        return;
    }
    Form_Unload();
    event->accept();
}

void frmMain::dragEnterEvent(QDragEnterEvent *event) {
    takeAsCopy(*event, !droppedFiles(*event->mimeData()).isEmpty());
}

void frmMain::dragMoveEvent(QDragMoveEvent *event) {
    takeAsCopy(*event, true);
}

void frmMain::dropEvent(QDropEvent *event) {
    const DroppedFiles files = droppedFiles(*event->mimeData());
    takeAsCopy(*event, !files.isEmpty());
    if (!event->isAccepted())
        return;
    activateWindow();
    // Queued, since the program that the files come from waits for the end of the event.
    QMetaObject::invokeMethod(
        this,
        [this, files] {
            runCommand([&] {
                if (files.project.isEmpty())
                    importReports(files.reports);
                else
                    switchProject(files.project, QString());
            });
        },
        Qt::QueuedConnection);
}

} // namespace veltrona
