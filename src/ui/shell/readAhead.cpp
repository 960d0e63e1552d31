#include "ui/shell/readAhead.h"

#include "core/base/command.h"
#include "core/shell/analysisView.h"
#include "core/shell/modMain.h"

#include <QApplication>

namespace veltrona {

// Milliseconds.
static constexpr int quietTime = 100;
/// Until another program has released its lock, or a command or dialog has ended.
static constexpr int retryTime = 250;

ReadAhead::ReadAhead(AnalysisView &view, QObject *parent) : QObject(parent) {
    view.onRefresh = [this] { start(); };
}

void ReadAhead::start() {
    m_timer.start(quietTime, this);
}

/// A timer of 0 ms fires when no other event is left.
void ReadAhead::timerEvent(QTimerEvent *) {
    // The progress of an import dispatches events in the middle of a batch.
    const bool isBusy = CommandScope::running() != 0 || QApplication::activeModalWidget();
    switch (isBusy ? RecordsLeft::Locked : modMain::session().readAhead()) {
    case RecordsLeft::Some:
        m_timer.start(0, this);
        break;
    case RecordsLeft::Locked:
        m_timer.start(retryTime, this);
        break;
    case RecordsLeft::None:
        m_timer.stop();
    }
}

} // namespace veltrona
