// An empty project in a temporary folder, for tests that put records into it one by one. The test
// needs a QCoreApplication, to find the template.
#pragma once

#include "core/base/dateValue.h"
#include "core/platform/sqlite/connection.h"

#include <QTemporaryDir>
#include <QVariant>

#include <map>
#include <memory>
#include <string>

namespace veltrona::test {

inline DateValue day(const QString &isoText) {
    return dateOfIsoText(isoText.toStdString()).value();
}

class RecordTable {
public:
    RecordTable();

    sqlite::Connection &connection() { return *m_connection; }
    /// Columns that aren't named get their defaults; CreativeId gets a number of its own.
    void insert(std::map<std::string, QVariant> values);

private:
    QTemporaryDir m_folder;
    std::unique_ptr<sqlite::Connection> m_connection;
    int m_creativeId = 0;
};

} // namespace veltrona::test
