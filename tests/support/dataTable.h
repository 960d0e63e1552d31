// Rows of a data-driven test, a line each.
#pragma once

#include <QTest>

namespace veltrona::test {

/// DataTable<QString, int> row("text", "number"); row("a row's name", "x", 7);
template<class... Types>
class DataTable {
public:
    template<class... Names>
    explicit DataTable(Names... columns) {
        (QTest::addColumn<Types>(columns), ...);
    }
    void operator()(const QByteArray &name, const Types &...values) const {
        QTestData &data = QTest::newRow(name.constData());
        (data << ... << values);
    }
};

} // namespace veltrona::test
