#include "core/analysis/grid/columnNotes.h"

#include "core/analysis/grid/statisticsGrid.h"

#include <array>

namespace veltrona {

namespace {

constexpr std::array<const char *, gridColumn::PositionCount> notes = {
    "The parts of the node that is selected in the tree.\nUnit: none, names as reports give them.",
    "Clicks of all records, added up.\nUnit: clicks.",
    "Impressions of all records, added up: how often ads were shown.\nUnit: impressions.",
    "Click-through rates of all records, added up: a sum, not an average.\nUnit: per cent.",
    "Mean of the records' costs per click, each record alike; none counts where it is 0.\n"
    "Unit: the currency of the reports.",
    "Costs of all records, added up.\nUnit: the currency of the reports.",
    "Conversions of all records, added up.\nUnit: conversions.",
    "Conversions of all records, added up, shown as per cent: a sum, not a rate.\nUnit: per cent.",
    "Cost by conversions of each record that has conversions, added up.\n"
    "Unit: millionths of the currency of the reports.",
    "Mean of the records' positions, each record alike; none counts where it is 0.\n"
    "Unit: positions, 1 is the top.",
    "Conversion values of all records, added up.\nUnit: the currency of the reports.",
    "Conversion value by cost, times 100, less 100; 0 without a cost.\nUnit: per cent.",
    "Transactions of all records, added up.\nUnit: transactions.",
};

} // namespace

QString columnNote(int col) {
    const bool known = col >= 0 && static_cast<std::size_t>(col) < notes.size();
    return known ? QString::fromLatin1(notes[static_cast<std::size_t>(col)]) : QString();
}

} // namespace veltrona
