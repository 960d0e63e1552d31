// Visiting records inside the engine: values arrive as they are stored, exceptions get out, and
// scans live side by side with statements and with each other.
#include "platform/sqlite/recordScan.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;
using sqlite::RecordValue;
using sqlite::scanRecords;
using sqlite::ValueType;
using Record = std::span<const RecordValue>;

namespace {
const QString withNul = QString("a") + QChar(0) + "b";
}

class RecordScanTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        m_table = std::make_unique<test::RecordTable>();
        m_table->insert({{"Campaign", withNul}, {"Clicks", 1}, {"Pos", 1.5}});
        m_table->insert({{"Campaign", QString(50'000, QChar(0xC4))}, {"Clicks", 2}});
        m_table->insert({{"Campaign", "it's ?1"}, {"Clicks", 4}, {"Pos", "x"}});
    }

    void values() {
        QStringList names;
        std::vector<ValueType> types;
        scanRecords(m_table->connection(), "campaign, pos, NULL", "FROM tblGoogleDays", {},
                    [&](Record record) {
                        QCOMPARE(record.size(), std::size_t(3));
                        const std::string_view name = record[0].utf8();
                        names +=
                            QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
                        types.push_back(record[1].type());
                        QCOMPARE(record[2].type(), ValueType::Null);
                        QVERIFY(record[2].utf8().empty());
                        if (types.back() == ValueType::Real)
                            QCOMPARE(record[1].real(), 1.5);
                    });
        QCOMPARE(names, QStringList({withNul, QString(50'000, QChar(0xC4)), "it's ?1"}));
        QVERIFY(types == std::vector({ValueType::Real, ValueType::Integer, ValueType::Text}));
    }

    void exceptionEndsTheScan() {
        int visits = 0;
        const auto scan = [&] {
            scanRecords(m_table->connection(), "Clicks", "FROM tblGoogleDays", {}, [&](Record) {
                if (++visits == 2)
                    throw Failure(7, "enough");
            });
        };
        QVERIFY_EXCEPTION_THROWN(scan(), Failure);
        QCOMPARE(visits, 2);
        QCOMPARE(sumOfClicks(), 7); // and nothing stays locked or half done
        m_table->connection().execute("DELETE FROM tblGoogleDays");
    }

private:
    qint64 sumOfClicks(const std::string &rest = "FROM tblGoogleDays") {
        qint64 sum = 0;
        scanRecords(m_table->connection(), "Clicks", rest, {},
                    [&](Record record) { sum += record[0].int64(); });
        return sum;
    }

    std::unique_ptr<test::RecordTable> m_table;
};

QTEST_GUILESS_MAIN(RecordScanTest)
#include "recordScanTest.moc"
