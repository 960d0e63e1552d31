#include "core/analysis/records/leafSums.h"

#include "core/analysis/records/recordWalk.h"

#include <numeric>

namespace veltrona {

namespace {

enum Field { Cost, ConvValue };
constexpr std::array figures = {Figure::Cost, Figure::ConvValue};

struct Sums {
    double cost = 0;
    double conversionValue = 0;
    bool hasRecords = false;

    template<class Record>
    void add(const Record &record) {
        addAsCell(cost, numberOf(record[Cost]) / millionths);
        addAsCell(conversionValue, numberOf(record[ConvValue]));
        hasRecords = true;
    }
};

void hand(const LeafDictionary &leaves, const std::vector<Sums> &sums,
          const std::function<void(const LeafSums &)> &visitor) {
    for (std::size_t leaf = 0; leaf < sums.size(); ++leaf) {
        if (sums[leaf].hasRecords)
            visitor({leaves.namesOf(leaf), sums[leaf].cost, sums[leaf].conversionValue});
    }
}

void sumUpColumns(const RecordColumns &columns, const RecordQuestion &question,
                  const std::function<void(const LeafSums &)> &visitor) {
    std::vector<int> groups(columns.leaves().size()); // each leaf its own
    std::iota(groups.begin(), groups.end(), 0);
    std::vector<Sums> sums(groups.size());
    columns.visit(groups, recordWalk::dateGroups(columns.dates(), question), figures, {},
                  [&sums](const RecordBatch &batch) {
                      recordWalk::visitBatch(batch, [&sums](int leaf, const auto &record) {
                          sums[static_cast<std::size_t>(leaf)].add(record);
                      });
                  });
    hand(columns.leaves(), sums, visitor);
}

void sumUpInEngine(const sqlite::Connection &connection, const NodeRecords &records,
                   const std::function<void(const LeafSums &)> &visitor) {
    LeafDictionary leaves;
    std::vector<Sums> sums;
    constexpr std::size_t firstFigure = nameColumns.size();
    sqlite::scanRecords(
        connection, "Campaign, Adgroup, AdwordsTyp, KeyWord, kwType, cost, ConvValue", records.sql,
        records.bindings, [&](std::span<const sqlite::RecordValue> record) {
            LeafDictionary::Names names;
            for (std::size_t i = 0; i < firstFigure; ++i)
                names[i] = record[i].utf8();
            const std::size_t leaf = leaves.add(names);
            sums.resize(leaves.size());
            sums[leaf].add(record.subspan(firstFigure));
        });
    hand(leaves, sums, visitor);
}

RecordQuestion questionOf(const DateRange &range) {
    return {NodePath(), range, std::nullopt, [](std::string_view) { return 0; }, figures};
}

} // namespace

void visitLeafSums(ProjectRecords &records, const DateRange &range,
                   const std::function<void(const LeafSums &)> &visitor) {
    const RecordQuestion question = questionOf(range);
    NodeRecords fromEngine;
    if (const RecordColumns *columns = recordWalk::columnsFor(records, question, fromEngine))
        sumUpColumns(*columns, question, visitor);
    else
        sumUpInEngine(records.connection(), fromEngine, visitor);
}

bool areLeafSumsCheap(ProjectRecords &records, const DateRange &range) {
    NodeRecords fromEngine;
    return recordWalk::columnsFor(records, questionOf(range), fromEngine) || fromEngine.areFew;
}

} // namespace veltrona
