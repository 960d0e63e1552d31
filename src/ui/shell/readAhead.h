// Reads the records of the open project into memory while the user does nothing: in slices of a few
// milliseconds from the event loop, so that the first wide click finds them there.
#pragma once

#include <QBasicTimer>
#include <QObject>

namespace veltrona {

class AnalysisView;

class ReadAhead : public QObject {
    Q_OBJECT

public:
    /// Starts after each refresh of the view, which must outlive it; sets its onRefresh.
    ReadAhead(AnalysisView &view, QObject *parent);

    /// Begins in a moment, or continues then: the window paints first, and a key that is held down
    /// isn't slowed down.
    void start();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QBasicTimer m_timer;
};

} // namespace veltrona
