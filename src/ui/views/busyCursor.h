// The busy cursor over the whole program for the length of a scope, and the ordinary cursor in its
// place while the user is asked something.
#pragma once

#include <QApplication>

namespace veltrona {

class BusyCursor {
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
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
    OrdinaryCursor(const OrdinaryCursor &) = delete;
    OrdinaryCursor &operator=(const OrdinaryCursor &) = delete;

private:
    bool m_replaces;
};

} // namespace veltrona
