// The table of day records: its columns in the order of the insert, and what marks a file as a
// project. data/schema.sql makes this table; openProject proves that a file has it.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace veltrona {

/// "Vltr"; stands in the header of each project file.
inline constexpr std::int32_t projectApplicationId = 0x566C7472;
/// Raised whenever an older program could no longer work with a new file.
inline constexpr int projectSchemaVersion = 1;

enum class ColumnKind { Text, Number, Date };

struct DayColumn {
    const char *name;
    ColumnKind kind;
};

inline constexpr std::array<DayColumn, 36> dayColumns{{
    {"Adgroup", ColumnKind::Text},         {"AdwordsTyp", ColumnKind::Text},
    {"agStatus", ColumnKind::Text},        {"Budget", ColumnKind::Number},
    {"Campaign", ColumnKind::Text},        {"CampStatus", ColumnKind::Text},
    {"Clicks", ColumnKind::Number},        {"conv", ColumnKind::Number},
    {"ConvValue", ColumnKind::Number},     {"ConvCost", ColumnKind::Number},
    {"cost", ColumnKind::Number},          {"cpc", ColumnKind::Number},
    {"CreativeDestUrl", ColumnKind::Text}, {"CreativeId", ColumnKind::Number},
    {"CreativeStatus", ColumnKind::Text},  {"creativeVisUrl", ColumnKind::Text},
    {"ctr", ColumnKind::Number},           {"desc1", ColumnKind::Text},
    {"desc2", ColumnKind::Text},           {"GoogleDate", ColumnKind::Date},
    {"headline", ColumnKind::Text},        {"Impressions", ColumnKind::Number},
    {"KeyWord", ColumnKind::Text},         {"keywordMinCpc", ColumnKind::Number},
    {"kwDestUrl", ColumnKind::Text},       {"kwStatus", ColumnKind::Text},
    {"kwType", ColumnKind::Text},          {"Leads", ColumnKind::Number},
    {"MaxContentCpc", ColumnKind::Number}, {"MaxCpc", ColumnKind::Number},
    {"PageViews", ColumnKind::Number},     {"Pos", ColumnKind::Number},
    {"Purchases", ColumnKind::Number},     {"Transactions", ColumnKind::Number},
    {"GoogleMonth", ColumnKind::Text},     {"GoogleWeek", ColumnKind::Text},
}};

/// The insert of one record, parameters in the order of `dayColumns`. A record whose six key
/// values stand in the table already changes nothing.
std::string dayInsertStatement();

} // namespace veltrona
