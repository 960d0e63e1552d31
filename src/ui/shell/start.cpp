#include "ui/shell/start.h"

#include "core/design/product.h"
#include "core/platform/desktop/endSignals.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"
#include "ui/shell/frmMain.h"
#include "ui/views/accessible/screenReader.h"
#include "ui/views/icons.h"

#include <QDir>
#include <QFileInfo>
#include <QWindow>

namespace veltrona {

namespace {

/// Notifies a screen reader of the control that has the focus, or of the item in it.
void notifyFocused(bool itemsOnly) {
    QWidget *widget = QApplication::focusWidget();
    QAccessibleInterface *control = accessibleOf(widget);
    QAccessibleInterface *item = control ? control->focusChild() : nullptr;
    const bool isItem = item && item->object() != widget;
    if (isItem || !itemsOnly)
        notifyFocus(isItem ? item : control);
}

} // namespace

Application::Application(int &argc, char **argv) : QApplication(argc, argv) {
    // No display name: Qt would append it to every caption.
    setApplicationName(productName);
    setApplicationVersion(programVersion());
    setDesktopFileName(QStringLiteral("org.veltrona.%1").arg(productName));
    setWindowIcon(icon(QStringLiteral("veltrona")));
    // The main window decides when the run ends; a message box at a bad start doesn't.
    setQuitOnLastWindowClosed(false);
    // Qt reports a window after the control in it, and a control after its item.
    connect(
        this, &QGuiApplication::focusWindowChanged, this, [] { notifyFocused(false); },
        Qt::QueuedConnection);
    connect(
        this, &QApplication::focusChanged, this, [] { notifyFocused(true); }, Qt::QueuedConnection);
}

bool Application::notify(QObject *receiver, QEvent *event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        filterCurrentException();
        return true;
    }
}

QStringList modMain::places() {
    return {DataFolder + QDir::separator() + productName, QFileInfo(DbFileName).absolutePath()};
}

int modMain::Main() {
    ExitFlag = false;
    int status = 1;
    // The whole run isn't one command, so it takes the filter without its scope.
    try {
        frmMain window;
        const desktop::EndSignals endSignals([&window] {
            QWidget *box = QApplication::activeModalWidget();
            if (box && !window.isVisible())
                box->close(); // which asks about a bad project: there is nothing else yet
            else
                window.close();
        });
        if (!window.Form_Load())
            return 0;
        if (services().endRequested) {
            window.close();
            return 0;
        }
        window.show();
        status = QApplication::exec();
        // After a failure that ends the run the window still has its project open.
        window.close();
    } catch (...) {
        filterCurrentException();
    }
    return status;
}

} // namespace veltrona
