// The hourglass over the whole program, gone again whatever happens, and the ordinary cursor in its
// place while the user is asked something.
#pragma once

#include <QApplication>

namespace veltrona {

class Hourglass {
public:
    Hourglass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QApplication::restoreOverrideCursor(); }
    Hourglass(const Hourglass &) = delete;
    Hourglass &operator=(const Hourglass &) = delete;
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
