// The 34 columns of a report that the program knows, and the spelling that the current report
// declares for each of them.
#pragma once

#include "core/database/dayTable.h"

#include <QString>

#include <algorithm>
#include <array>
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

/// Index of the column whose member is this text, reportColumnCount if there is none.
constexpr int indexOfColumn(std::string_view ReportColumn::*member, std::string_view text) {
    const auto found = std::ranges::find(reportColumns, text, member);
    return static_cast<int>(found - reportColumns.begin());
}
constexpr int reportColumn(std::string_view name) {
    return indexOfColumn(&ReportColumn::name, name);
}

} // namespace veltrona
