// The hourglass over the whole program, gone again whatever happens.
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

} // namespace veltrona
