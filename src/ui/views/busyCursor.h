// The busy cursor over the whole program for the length of a scope, and the ordinary cursor in its
// place while the user is asked something.
#pragma once

#include <QApplication>

namespace veltrona {

class BusyCursor {
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(BusyCursor)
};

class OrdinaryCursor {
public:
    OrdinaryCursor() : m_replaces(QApplication::overrideCursor() != nullptr) {
        if (m_replaces)
            QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~OrdinaryCursor() {
        if (m_replaces)
            QApplication::restoreOverrideCursor();
    }
    Q_DISABLE_COPY_MOVE(OrdinaryCursor)

private:
    bool m_replaces;
};

} // namespace veltrona
