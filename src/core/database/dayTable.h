// The table of day records: its columns in the order of the insert, and the marks of a project in
// a file's header. data/schema.sql creates this table; openProject verifies it.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace veltrona {

/// "Vltr"
inline constexpr std::int32_t projectApplicationId = 0x566C7472;
/// Raised whenever an older program could no longer work with a new file; openProject then has to
/// convert the files of older schemas.
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

/// Inserts one record, with parameters in the order of `dayColumns`, unless the table has one with
/// the same six key values.
inline std::string dayInsertStatement() {
    std::string names;
    std::string values;
    for (const DayColumn &column : dayColumns) {
        names.append(names.empty() ? "" : ",").append(column.name);
        values.append(values.empty() ? "?" : ",?");
    }
    return "INSERT INTO tblGoogleDays (" + names + ") VALUES (" + values +
           ") ON CONFLICT (Campaign,Adgroup,KeyWord,kwType,GoogleDate,CreativeId) DO NOTHING";
}

} // namespace veltrona
