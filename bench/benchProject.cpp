#include "benchProject.h"

#include "core/database/dayTable.h"
#include "core/database/projectFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <numeric>
#include <random>
#include <string_view>
#include <utility>

namespace veltrona::bench {

namespace {

struct Record {
    int day;
    int campaign;
    int adGroup;
    int keyword;
};

QString textOf(const char *column, const Record &r) {
    const QByteArray name(column);
    const bool content = r.keyword % 4 == 3;
    if (name == "Campaign")
        return QStringLiteral("Campaign %1").arg(r.campaign);
    if (name == "Adgroup")
        return QStringLiteral("Ad group %1 of %2").arg(r.adGroup).arg(r.campaign);
    if (name == "KeyWord")
        return QStringLiteral("keyword %1 for %2").arg(r.keyword / 2).arg(r.adGroup);
    if (name == "kwType")
        return r.keyword % 2 ? QStringLiteral("Exact") : QStringLiteral("Broad");
    if (name == "AdwordsTyp")
        return content ? QStringLiteral("Content Only") : QStringLiteral("Search Only");
    if (name.endsWith("Url"))
        return QStringLiteral("https://www.shop.example/group-%1?from=ad&id=%2")
            .arg(r.adGroup)
            .arg(r.keyword);
    const CalendarDay day = calendarDay(r.day);
    if (name == "GoogleMonth")
        return QStringLiteral("%1 %2").arg(day.year).arg(day.month, 2, 10, QLatin1Char('0'));
    if (name == "GoogleWeek")
        return QStringLiteral("%1 %2").arg(day.year).arg(weekOfYear(r.day), 2, 10,
                                                         QLatin1Char('0'));
    if (name == "headline" || name.startsWith("desc"))
        return QStringLiteral("Things for group %1, sent today").arg(r.adGroup);
    return QStringLiteral("Active");
}

/// Only the figures that the views read; the others are 0.
double numberOf(const char *column, const Record &r, int clicks, int imps) {
    using Figure = std::pair<std::string_view, double>;
    const int cpc = clicks ? 120'000 + 10'000 * (r.keyword * 7 % 50) : 0;
    const Figure figures[] = {
        {"Clicks", clicks},
        {"Impressions", imps},
        {"ctr", clicks * 10'000 / imps / 100.0},
        {"cpc", cpc},
        {"cost", static_cast<double>(cpc) * clicks},
        {"conv", clicks / 7},
        {"Transactions", clicks / 7},
        {"ConvValue", clicks / 7 * 24.9},
        {"Pos", (11 + imps % 50) / 10.0},
        {"CreativeId", 481'000'000'000.0 + r.campaign * 1000 + r.adGroup * 10 + r.keyword % 4 / 3},
        {"Budget", 900'000},
        {"MaxCpc", 900'000},
    };
    const auto found = std::ranges::find(figures, column, &Figure::first);
    return found == std::end(figures) ? 0 : found->second;
}

/// All records, those of a day in random order; the same in each run.
class Records {
public:
    Records() : m_places(recordsPerDay) { std::iota(m_places.begin(), m_places.end(), 0); }

    void next() {
        if (m_next % recordsPerDay == 0)
            std::shuffle(m_places.begin(), m_places.end(), m_random);
        const int place = m_places[static_cast<std::size_t>(m_next % recordsPerDay)];
        m_record = {firstDay() + m_next / recordsPerDay, place / (adGroups * keywords),
                    place / keywords % adGroups, place % keywords};
        ++m_next;
        m_imps = 1 + static_cast<int>(m_random() % 400);
        m_clicks = static_cast<int>(m_random() % 3 * (m_random() % 8)) % (m_imps + 1);
    }
    QString text(const DayColumn &column) const {
        return column.kind == ColumnKind::Date ? isoText(m_record.day)
                                               : textOf(column.name, m_record);
    }
    double number(const DayColumn &column) const {
        return numberOf(column.name, m_record, m_clicks, m_imps);
    }

private:
    std::vector<int> m_places;
    std::mt19937 m_random{7};
    int m_next = 0;
    Record m_record{};
    int m_imps = 0;
    int m_clicks = 0;
};

void bindRecord(sqlite::Statement &insert, const Records &records) {
    int parameter = 0;
    for (const DayColumn &column : dayColumns) {
        ++parameter;
        if (column.kind != ColumnKind::Number) {
            insert.bind(parameter, records.text(column));
            continue;
        }
        const double number = records.number(column);
        const auto whole = static_cast<qint64>(number);
        if (static_cast<double>(whole) == number)
            insert.bind(parameter, whole);
        else
            insert.bind(parameter, number);
    }
}

void fill(sqlite::Connection &connection, int records) {
    connection.execute("PRAGMA cache_size = -1000000"); // KiB; for this connection alone
    sqlite::Transaction transaction(connection);
    sqlite::Statement insert = connection.prepare(dayInsertStatement());
    Records all;
    for (int i = 0; i < records; ++i) {
        all.next();
        bindRecord(insert, all);
        insert.step();
        insert.reset();
    }
    transaction.commit();
}

QString templatePath() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/data.dat");
}

QString fileNamed(const QString &name) {
    return QStringLiteral(BENCH_FOLDER "/") + name;
}

} // namespace

QString reportColumn(const QByteArray &column) {
    static const QHash<QByteArray, QString> others = {
        {"GoogleDate", "date"},
        {"Impressions", "imps"},
        {"AdwordsTyp", "adwordstype"},
        {"ConvCost", "convCost"},
    };
    return others.value(column, QString::fromLatin1(column).toLower());
}

int firstDay() {
    return dayNumber(CalendarDay{2025, 1, 1});
}

DateRange daysOf(int records) {
    return {static_cast<DateValue>(firstDay()),
            static_cast<DateValue>(firstDay() + (records - 1) / recordsPerDay)};
}

QString emptyProject() {
    const QString path = fileNamed(QStringLiteral("empty.vlt"));
    makeProject(templatePath(), path);
    return path;
}

QString projectWith(int records) {
    // Another schema or other records need another name.
    const QString path =
        fileNamed(QStringLiteral("mixed-%1-v%2.vlt").arg(records).arg(projectSchemaVersion));
    if (QFile::exists(path))
        return path;
    std::fprintf(stderr, "Making a project of %d records, once.\n", records);
    const QString unfinished = path + QStringLiteral(".unfinished");
    makeProject(templatePath(), unfinished);
    fill(*openProject(unfinished), records);
    QFile::rename(unfinished, path);
    return path;
}

sqlite::Connection &connectionTo(int records) {
    static std::map<int, std::unique_ptr<sqlite::Connection>> open;
    std::unique_ptr<sqlite::Connection> &connection = open[records];
    if (!connection)
        connection = openProject(projectWith(records));
    return *connection;
}

ProjectRecords &recordsOf(int records) {
    static std::map<int, std::unique_ptr<ProjectRecords>> all;
    std::unique_ptr<ProjectRecords> &found = all[records];
    if (!found)
        found = std::make_unique<ProjectRecords>(connectionTo(records));
    found->read();
    return *found;
}

QString reportAfter(int records, int rows) {
    const QString path = fileNamed(QStringLiteral("after-%1.xml").arg(records));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return path;
    QXmlStreamWriter writer(&file);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("report"));
    writer.writeStartElement(QStringLiteral("table"));
    writer.writeStartElement(QStringLiteral("columns"));
    for (const DayColumn &column : dayColumns) {
        const QString name = reportColumn(column.name);
        if (name.startsWith(u"google"))
            continue; // month and week
        writer.writeEmptyElement(QStringLiteral("column"));
        writer.writeAttribute(QStringLiteral("name"), name);
    }
    writer.writeEndElement();
    writer.writeStartElement(QStringLiteral("rows"));
    Records all;
    for (int i = 0; i < records; ++i)
        all.next();
    for (int i = 0; i < rows; ++i) {
        all.next();
        writer.writeEmptyElement(QStringLiteral("row"));
        for (const DayColumn &column : dayColumns)
            writer.writeAttribute(reportColumn(column.name),
                                  column.kind == ColumnKind::Number
                                      ? QString::number(all.number(column), 'g', 15)
                                      : all.text(column));
    }
    writer.writeEndDocument();
    return path;
}

} // namespace veltrona::bench
