// A Tag is read back to exactly the values that it was made from, whatever they hold.
#include "core/analysis/nodeTag.h"

#include <QTest>

using namespace veltrona;

namespace {
QString tagOf(const QString &campaign, const QString &adGroup, const QString &keyword) {
    return " AND campaign='" + doubledApostrophes(campaign) + "' AND adGroup='" +
           doubledApostrophes(adGroup) + "' AND adWordsTyp='Search Only' AND Keyword='" +
           doubledApostrophes(keyword) + "' ORDER BY kwType";
}
} // namespace

class NodeTagTest : public QObject {
    Q_OBJECT
private slots:
    void valuesSurvive_data() {
        QTest::addColumn<QString>("name");
        const QStringList names = {
            "",
            "O'Neil",
            "''quoted'",
            "' ORDER BY kwType",
            "' AND adGroup='",
            "campaign='x' AND adGroup='y",
            "'; DROP TABLE tblGoogleDays; --",
            "two\nlines\r\n",
            QString::fromUtf8("Äpfel 靴 \U0001F45F e\u0301"),
            QString(1, QChar(0xD800)) + "'lone",
        };
        for (const QString &name : names)
            QTest::addRow("%s", qPrintable(name)) << name;
    }
    void valuesSurvive() {
        QFETCH(const QString, name);
        const NodeTag tag = readNodeTag(tagOf(name, name + "g", "k" + name));
        QCOMPARE(tag.value(u"campaign"), name);
        QCOMPARE(tag.value(u"adGroup"), name + "g");
        QCOMPARE(tag.value(u"adWordsTyp"), "Search Only");
        QCOMPARE(tag.value(u"Keyword"), "k" + name);
        QCOMPARE(tag.orderBy, "kwType");
        QCOMPARE(tag.conditions.size(), std::size_t(4));
    }

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
