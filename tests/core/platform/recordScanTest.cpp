// An exception of a visitor gets out of the engine, and nothing stays locked or half done behind
// it.
#include "core/platform/sqlite/recordScan.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;

class RecordScanTest : public QObject {
    Q_OBJECT
private slots:
    void exceptionEndsTheScan() {
        test::RecordTable table;
        for (const int clicks : {1, 2, 4})
            table.insert({{"KeyWord", QString::number(clicks)}, {"Clicks", clicks}});
        int visits = 0;
        qint64 sum = 0;
        const auto scan = [&](int last) {
            sqlite::scanRecords(table.connection(), "Clicks", "FROM tblGoogleDays", {},
                                [&](std::span<const sqlite::RecordValue> record) {
                                    sum += record[0].int64();
                                    if (++visits == last)
                                        throw Failure(7, "enough");
                                });
        };
        QVERIFY_EXCEPTION_THROWN(scan(2), Failure);
        QCOMPARE(visits, 2);
        sum = 0;
        scan(0);
        QCOMPARE(sum, 7);
        table.connection().execute("DELETE FROM tblGoogleDays");
    }
};

QTEST_GUILESS_MAIN(RecordScanTest)
#include "recordScanTest.moc"
