// The tree's nodes, their texts letter by letter, their Tags and their order.
#include "core/analysis/tree/navigationTree.h"

#include "core/analysis/records/readingOrder.h"
#include "core/analysis/tree/navigationTexts.h"
#include "support/dataTable.h"
#include "support/faults.h"
#include "support/recordTable.h"

#include <QTest>

#include <algorithm>
#include <random>

using namespace veltrona;

namespace {

void add(test::RecordTable &table, const QString &campaign, const QString &adGroup,
         const QString &keyword, const QString &type, const QString &branch = "Search Only") {
    table.insert({{"Campaign", campaign},
                  {"Adgroup", adGroup},
                  {"KeyWord", keyword},
                  {"kwType", type},
                  {"AdwordsTyp", branch},
                  {"GoogleDate", "2007-05-14"}});
}

QStringList texts(const auto &nodes) {
    QStringList list;
    for (const TreeNode *node : nodes)
        list += node->Text();
    return list;
}

/// The node under the root that has these texts, level by level.
TreeNode *find(const Tree &tree, const QStringList &path) {
    TreeNode *node = tree.Nodes().Item(1);
    for (const QString &text : path) {
        const auto found =
            std::find_if(node->Children.begin(), node->Children.end(),
                         [&](const TreeNode *child) { return child->Text() == text; });
        if (found == node->Children.end())
            throw Failure(1, "no node " + text);
        node = *found;
    }
    return node;
}

} // namespace

class NavigationTreeTest : public QObject {
    Q_OBJECT
private slots:
    void textsToTheLetter() {
        test::RecordTable table;
        add(table, "O'Neil", "it's", "'70s shoes", "Broad");
        Tree tree;
        buildNavigationTree(table.connection(), "My <b>project</b>", tree);
        const TreeNode *root = tree.Nodes().Item(1);
        QCOMPARE(root->Key() + root->Tag(), "0-Campaign Summary ORDER BY campaign");
        QCOMPARE(root->Text(), "My <b>project</b>");
        QVERIFY(root->Expanded && !tree.SelectedItem());
        const auto check = [&](const QStringList &path, const QString &key, const QString &tag) {
            const TreeNode *node = find(tree, path);
            QCOMPARE(node->Key(), key);
            QCOMPARE(node->Tag(), tag);
            QCOMPARE(int(node->Image), 1);
            QVERIFY(!node->Expanded);
        };
        check({"O'Neil", "it's", "Content"}, "3-Campain: 'O'Neil' > Adgroup: 'it's' > Content",
              " AND campaign='O''Neil' AND adGroup='it''s' AND adWordsTyp='Content Only' ORDER BY "
              "Keyword");
        const QString keywordTag =
            " AND campaign='O''Neil' AND adGroup='it''s' AND "
            "adWordsTyp='Search Only' AND Keyword='''70s shoes' ORDER BY kwType";
        check({"O'Neil", "it's", "Search keywords", "'70s shoes"},
              "4-Campain: 'O'Neil' > Adgroup: 'it's' > Search keywords > Keyword: ''70s shoes'",
              keywordTag);
        check({"O'Neil", "it's", "Search keywords", "'70s shoes", "Broad"},
              "5-Campain: 'O'Neil' > Adgroup: 'it's' > Search keywords > Keyword: ''70s shoes' > "
              "KeywordType: 'Broad'",
              keywordTag);
        QCOMPARE(tree.Nodes().Count(), 7);
    }

    void branchesWhateverTheTableHolds() {
        test::RecordTable table;
        add(table, "c", "g", "content word", "Broad", "Content Only");
        add(table, "c", " h  ", "  ", "\tt\u00A0", "something else"); // blanks alone are trimmed
        Tree tree;
        buildNavigationTree(table.connection(), "p", tree);
        for (const TreeNode *adGroup : find(tree, {"c"})->Children) {
            QCOMPARE(texts(adGroup->Children), (QStringList{"Search keywords", "Content"}));
            QVERIFY(adGroup->Children[1]->Children.empty());
        }
        QCOMPARE(texts(find(tree, {"c", "g", "Search keywords"})->Children),
                 QStringList{"content word"});
        QVERIFY(find(tree, {"c", "h", "Search keywords", "", "\tt\u00A0"}));
    }

    /// Blobs sort after texts, whatever their bytes.
    void blobsInAForeignProject() {
        test::RecordTable table;
        add(table, "z", "g", "k", "t");
        table.connection().execute(
            "WITH days(day) AS (SELECT 1 UNION ALL SELECT day + 1 FROM days WHERE day < 50) INSERT "
            "INTO tblGoogleDays (Campaign, GoogleDate) SELECT x'61', day FROM days");
        Tree tree;
        buildNavigationTree(table.connection(), "p", tree);
        QCOMPARE(texts(tree.Nodes().Item(1)->Children), (QStringList{"a", "z"}));
    }

    void readingOrderOnEachLevel() {
        test::RecordTable table;
        const QStringList stored = {"Zoo", "apple", "Apple"};
        const QStringList shown = {"Apple", "apple", "Zoo"};
        for (const QString &name : stored) {
            add(table, name, "g", "k", "t");
            add(table, "c", name, "k", "t");
            add(table, "c", "g", name, "t");
            add(table, "c", "g", "k", name);
        }
        Tree tree;
        buildNavigationTree(table.connection(), "p", tree);
        const auto listed = [&](const QStringList &path, const QString &other) {
            QStringList names = texts(find(tree, path)->Children);
            names.removeOne(other);
            return names;
        };
        QCOMPARE(listed({}, "c"), shown);
        QCOMPARE(listed({"c"}, "g"), shown);
        QCOMPARE(listed({"c", "g", "Search keywords"}, "k"), shown);
        QCOMPARE(listed({"c", "g", "Search keywords", "k"}, "t"), shown);
    }

    void manyRecordsOfAName() {
        test::RecordTable table;
        const QStringList path = {"", "a", "b"};
        QStringList expected;
        int records = 0;
        table.connection().execute("BEGIN");
        for (const QString &campaign : path)
            for (const QString &adGroup : path)
                for (const QString &keyword : path)
                    for (const QString &type : path) {
                        // Runs of 1 to 81 records, so that some are stepped through and some
                        // skipped.
                        for (int i = records++; i >= 0; --i)
                            add(table, campaign, adGroup, keyword, type);
                        expected += (QStringList{campaign, adGroup, keyword, type}).join('/');
                    }
        table.connection().execute("COMMIT");
        Tree tree;
        buildNavigationTree(table.connection(), "p", tree);
        QStringList leaves;
        for (int i = 1; i <= tree.Nodes().Count(); ++i) {
            const TreeNode *node = tree.Nodes().Item(i);
            if (!node->Key().startsWith("5-"))
                continue;
            QStringList names = pathOf(*node).names;
            names.remove(2); // the branch
            leaves += names.join('/');
        }
        QCOMPARE(leaves, expected);
        const int count = tree.Nodes().Count();
        const auto failure = failureOf(
            [&] { buildNavigationTree(table.connection(), "p", tree, bytesOfNode * 100); });
        QVERIFY(failure && failure->text().contains(table.connection().path()));
        QCOMPARE(tree.Nodes().Count(), count);
    }

    void readingOrder_data() {
        const test::DataTable<QStringList> row;
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
    void readingOrder() {
        const auto [expected] = test::row<QStringList>();
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

QTEST_GUILESS_MAIN(NavigationTreeTest)
#include "navigationTreeTest.moc"
