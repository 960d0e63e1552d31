// The empty project that new ones are copied from. It lies beside the test programs, as beside the
// program.
#pragma once

#include <QCoreApplication>

namespace veltrona::test {

inline QString projectTemplate() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/data.dat");
}

} // namespace veltrona::test
