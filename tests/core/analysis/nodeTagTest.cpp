// A Tag is read back to exactly the values that it was made from, whatever they hold.
#include "core/analysis/nodeTag.h"

#include <QTest>

using namespace veltrona;

class NodeTagTest : public QObject {
    Q_OBJECT
private slots:
    void otherTexts() {
        for (const char *text :
             {"", "anything", "ORDER BY campaign", " ORDER BY campaign; DROP TABLE tblGoogleDays",
              " ORDER BY clicks", " AND campaign='x'", " AND campaign='x ORDER BY adGroup",
              " AND campaign='it's' ORDER BY adGroup", " AND Campaign='x' ORDER BY adGroup",
              " AND campaign=x ORDER BY adGroup", " AND kwType='x' ORDER BY adGroup",
              " AND campaign='x'  ORDER BY adGroup", " AND campaign='x' OR 1=1 ORDER BY adGroup"}) {
            const NodeTag tag = readNodeTag(text);
            QVERIFY2(tag.conditions.empty() && tag.orderBy.isEmpty(), text);
        }
    }
};

QTEST_APPLESS_MAIN(NodeTagTest)
#include "nodeTagTest.moc"
