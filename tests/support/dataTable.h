// Rows of a data-driven test, a line each.
#pragma once

#include <QTest>

#include <tuple>

namespace veltrona::test {

/// Qt keeps the pointers.
inline constexpr const char *columnNames[] = {"0", "1", "2", "3", "4", "5", "6", "7"};

/// DataTable<QString, int> row; row("a row's name", "x", 7);
template<class... Types>
class DataTable {
public:
    DataTable() {
        int column = 0;
        (QTest::addColumn<Types>(columnNames[column++]), ...);
    }
    void operator()(const QByteArray &name, const Types &...values) const {
        QTestData &data = QTest::newRow(name.constData());
        (data << ... << values);
    }
};

/// The current row: const auto [text, number] = row<QString, int>();
template<class... Types>
std::tuple<Types...> row() {
    int column = 0;
    const auto cell = [&]<class Type>(Type *) {
        const int type = qMetaTypeId<Type>();
        return *static_cast<Type *>(QTest::qData(columnNames[column++], type));
    };
    return {cell(static_cast<Types *>(nullptr))...}; // in braces from left to right
}

} // namespace veltrona::test
