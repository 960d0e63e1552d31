// Names in the order in which a reader looks for them.
#include "core/analysis/readingOrder.h"

#include "support/dataTable.h"

#include <QTest>

#include <algorithm>
#include <random>

using namespace veltrona;

class ReadingOrderTest : public QObject {
    Q_OBJECT
private slots:
    void lists_data() {
        const test::DataTable<QStringList> row("expected");
        const auto list = [&](const char *name, const char *texts) {
            row(name, QString::fromUtf8(texts).split('|'));
        };
        list("letters before case", "|1|10|2|apple|Apple pie|Zoo|zoom");
        list("umlauts beside their letters", "Apfel|apfel|Äpfel|apfelmus|Zoo");
        list("accents before what follows is no reason", "cote|coté|côte|coter");
        list("case last, capitals first", "Shoes|shoes|SHOES 2|shoes 3");
        list("accents weigh more than case", "e|É|é|ea");
        list("sharp s", "Strasse|strasse|STRA\u1E9EE|Straße|strassen|strast");
        list("composed and decomposed", "cafe|cafe\u0301|café|cafes");
        list("beyond the first plane", "a|\uFF71|\uFFFD|\U00010400|\U0001F45F|\U0001F45F b");
        list("capitals beyond the first plane", "\U00010400|\U00010428|\U00010401");
        list("Greek and Cyrillic", "άλφα|ΒΉΤΑ|вода|Город|ёлка|еще|Жук");
        list("vowel signs count", "कक|का|कि|ख");
    }
    void lists() {
        QFETCH(const QStringList, expected);
        std::mt19937 random(7);
        for (int round = 0; round < 20; ++round) {
            QStringList names = expected;
            std::shuffle(names.begin(), names.end(), random);
            std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
                return ReadingKey(a) < ReadingKey(b);
            });
            QCOMPARE(names, expected);
        }
        for (const QString &name : expected)
            QVERIFY(!(ReadingKey(name) < ReadingKey(name)));
    }
};

QTEST_APPLESS_MAIN(ReadingOrderTest)
#include "readingOrderTest.moc"
