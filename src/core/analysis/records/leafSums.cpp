#include "core/analysis/records/leafSums.h"

#include "core/analysis/records/cellText.h"
#include "core/analysis/records/recordWalk.h"

#include <algorithm>
#include <array>
#include <vector>

namespace veltrona {

namespace {

enum Field { Cost, ConvValue };
constexpr std::array figures = {Figure::Cost, Figure::ConvValue};

struct Sums {
    double cost = 0;
    double conversionValue = 0;
    bool hasRecords = false;

    void add(const auto &record) {
        addAsCell(cost, numberOf(record[Cost]) / 1'000'000);
        addAsCell(conversionValue, numberOf(record[ConvValue]));
        hasRecords = true;
    }
};

RecordQuery queryOf(const DateRange &range, LeafDictionary &leaves) {
    return {NodePath(),
            range,
            {NameColumn::Campaign, NameColumn::Adgroup, NameColumn::AdwordsTyp, NameColumn::KeyWord,
             NameColumn::KwType},
            [&leaves](std::span<const std::string_view> names) {
                LeafDictionary::Names leaf;
                std::copy(names.begin(), names.end(), leaf.begin());
                return static_cast<int>(leaves.add(leaf));
            },
            figures};
}

} // namespace

void visitLeafSums(ProjectRecords &records, const DateRange &range,
                   const std::function<void(const LeafSums &)> &visitor) {
    LeafDictionary leaves;
    std::vector<Sums> sums;
    visitRecords(records, queryOf(range, leaves), [&](const RecordBatch &batch, auto) {
        sums.resize(leaves.size());
        forEachRecord(batch, [&sums](int leaf, const auto &record) {
            sums[static_cast<std::size_t>(leaf)].add(record);
        });
    });
    for (std::size_t leaf = 0; leaf < sums.size(); ++leaf) {
        if (sums[leaf].hasRecords)
            visitor({leaves.namesOf(leaf), sums[leaf].cost, sums[leaf].conversionValue});
    }
}

bool areLeafSumsCheap(ProjectRecords &records, const DateRange &range) {
    LeafDictionary leaves;
    return isCheap(records, queryOf(range, leaves));
}

} // namespace veltrona
