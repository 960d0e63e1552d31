#include "ui/report/printProgress.h"

#include "core/base/text.h"
#include "core/platform/services.h"
#include "ui/views/busyCursor.h"

#include <QCoreApplication>
#include <QPushButton>

#include <limits>

namespace veltrona {

namespace {
constexpr std::chrono::milliseconds shownAfter{1000};
} // namespace

PrintProgress::PrintProgress(QWidget *owner)
    : m_box(QString(), QString(), 0, 0, owner), m_begun(services().steadyTime()) {
    m_box.setWindowTitle(u"Printing"_s);
    m_box.setWindowModality(Qt::ApplicationModal);
    m_box.setCancelButton(new QPushButton(u"&Cancel"_s));
    m_box.setMinimumWidth(m_box.fontMetrics().averageCharWidth() * 50);
    m_box.setAutoClose(false);
    m_box.setAutoReset(false);
    // Qt's own estimate would show it earlier, or not at all.
    m_box.setMinimumDuration(std::numeric_limits<int>::max());
}

PrintProgress::~PrintProgress() = default;

bool PrintProgress::step(const QString &text, int done, int all) {
    if (!m_cursor && services().steadyTime() - m_begun < shownAfter)
        return !services().endRequested;
    m_box.setLabelText(text); // screen readers are notified
    m_box.setAccessibleDescription(text);
    m_box.setMaximum(all);
    m_box.setValue(done);
    if (!m_cursor) {
        m_cursor = std::make_unique<OrdinaryCursor>();
        m_box.show();
    }
    QCoreApplication::processEvents();
    return !m_box.wasCanceled() && !services().endRequested;
}

} // namespace veltrona
