#include "ui/import/frmWait.h"

#include "core/import/progress.h"
#include "ui/views/accessible/announcement.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QTimer>

#include <chrono>
#include <utility>

namespace veltrona {

namespace {
constexpr TwipRect innerSize{0, 0, 6765, 1110};
constexpr DesignedControl design[] = {
    designedIn(measuredLabels, "Label1"),
    {"pbWait", {240, 480, 6375, 375}},
};

// A window that is never painted, say on a locked screen, must not block its import forever.
constexpr std::chrono::milliseconds longestWaitForPaint{1000};
} // namespace

frmWait::frmWait()
    : DesignedDialog("frmWait", design, innerSize, Qt::Dialog | Qt::FramelessWindowHint),
      Label1(desktop::makeControl<QLabel>(design, "Label1", this)),
      pbWait(desktop::makeControl<QProgressBar>(design, "pbWait", this)) {
    Label1->setBuddy(pbWait);
    pbWait->setAccessibleName(Label1->text());
    pbWait->setTextVisible(false);
    setAccessibleName(Label1->text());
}

frmWait &frmWait::instance() {
    return desktop::sharedForm<frmWait>();
}

void frmWait::init(int mn, int mx) {
    m_max = mx;
    m_value = mn;
    // Without a range QProgressBar becomes a busy indicator.
    pbWait->setRange(mn, qMax(mx, mn + 1));
    pbWait->setValue(mn);
}

void frmWait::inc() {
    if (m_value >= m_max)
        return;
    const bool repaints = progressRepaints(m_value, m_max);
    ++m_value;
    // The bar repaints itself and notifies screen readers at each change, so it gets the value only
    // when it is to be seen, and at the end.
    if (repaints || m_value == m_max) {
        pbWait->setUpdatesEnabled(false);
        pbWait->setValue(m_value);
        pbWait->setUpdatesEnabled(true);
    }
    if (repaints) {
        repaint();
        QCoreApplication::processEvents();
    }
}

void frmWait::Show(std::function<void()> import) {
    if (isVisible())
        return;
    m_import = std::move(import);
    m_activated = false;
    showModal();
    // Even if the end of the application has broken off the event loop, nothing stays to be run.
    m_activated = true;
    m_import = nullptr;
    hide();
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
}

// Being activated is no sign to rely on: without a window manager no window ever is.
void frmWait::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    announce(*this, Label1->text());
    QTimer::singleShot(longestWaitForPaint, this, &frmWait::activateOnce);
}

void frmWait::paintEvent(QPaintEvent *event) {
    QDialog::paintEvent(event);
    QPainter(this).drawRect(rect().adjusted(0, 0, -1, -1));
    QMetaObject::invokeMethod(this, &frmWait::activateOnce, Qt::QueuedConnection);
}

void frmWait::activateOnce() {
    if (m_activated || !isVisible())
        return;
    m_activated = true;
    Form_Activate();
}

void frmWait::Form_Activate() {
    // Nothing may be thrown through the event loop; Show rethrows it.
    try {
        std::exchange(m_import, nullptr)();
    } catch (...) {
        m_failure = std::current_exception();
    }
    done(Accepted);
}

void frmWait::closeEvent(QCloseEvent *event) {
    event->ignore();
}

} // namespace veltrona
