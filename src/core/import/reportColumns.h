// The 34 columns of a report that the program knows, and the spelling that the current report
// declares for each of them.
#pragma once

#include "core/database/dayTable.h"

#include <QString>

#include <array>
#include <cstddef>
#include <string_view>

namespace veltrona {

inline constexpr int reportColumnCount = 34;

/// Indexed like reportColumns; empty for a column that isn't declared.
using ReportColumnNames = std::array<QString, reportColumnCount>;

struct ReportColumn {
    std::string_view name;
    std::string_view dayColumn; // the column of the table that stores its values
};

/// In the order in which the column check compares them.
inline constexpr std::array<ReportColumn, reportColumnCount> reportColumns{{
    // clang-format off
    {"adgroup",         "Adgroup"},
    {"adwordstype",     "AdwordsTyp"},
    {"agstatus",        "agStatus"},
    {"budget",          "Budget"},
    {"campaign",        "Campaign"},
    {"campstatus",      "CampStatus"},
    {"clicks",          "Clicks"},
    {"conv",            "conv"},
    {"convCost",        "ConvCost"},
    {"convvalue",       "ConvValue"},
    {"cost",            "cost"},
    {"cpc",             "cpc"},
    {"creativedesturl", "CreativeDestUrl"},
    {"creativeid",      "CreativeId"},
    {"creativestatus",  "CreativeStatus"},
    {"creativevisurl",  "creativeVisUrl"},
    {"ctr",             "ctr"},
    {"desc1",           "desc1"},
    {"desc2",           "desc2"},
    {"date",            "GoogleDate"},
    {"headline",        "headline"},
    {"imps",            "Impressions"},
    {"keyword",         "KeyWord"},
    {"keywordmincpc",   "keywordMinCpc"},
    {"kwdesturl",       "kwDestUrl"},
    {"kwstatus",        "kwStatus"},
    {"kwtype",          "kwType"},
    {"leads",           "Leads"},
    {"maxcontentcpc",   "MaxContentCpc"},
    {"maxcpc",          "MaxCpc"},
    {"pageviews",       "PageViews"},
    {"pos",             "Pos"},
    {"purchases",       "Purchases"},
    {"transactions",    "Transactions"},
    // clang-format on
}};

/// Index into reportColumns; reportColumnCount if there is none.
constexpr int reportColumn(std::string_view name) {
    int index = 0;
    while (index < reportColumnCount && reportColumns[static_cast<std::size_t>(index)].name != name)
        ++index;
    return index;
}

/// The report column that is stored in a column of the table.
constexpr int reportColumnOf(std::string_view dayColumn) {
    int index = 0;
    while (index < reportColumnCount &&
           reportColumns[static_cast<std::size_t>(index)].dayColumn != dayColumn)
        ++index;
    return index;
}

} // namespace veltrona
