// The resize rules of the main window, against numbers worked out by hand.
#include "shell/layout.h"

#include "support/dataTable.h"

#include <QTest>

using namespace veltrona;

class LayoutTest : public QObject {
    Q_OBJECT

private slots:
    void theMinimumSize() {
        const WindowLayout at = arrangeWindow({.width = 11000, .height = 6500});
        QCOMPARE(at.Frame1, (TwipRect{60, 600, 2750, 2577.5F}));
        QCOMPARE(at.Frame2, (TwipRect{2880, 600, 7940, 2577.5F}));
        QCOMPARE(at.Frame3, (TwipRect{60, 3187.5F, 10770, 2127.5F}));
        QCOMPARE(at.treeList, (TwipRect{120, 240, 2550, 2187.5F}));
        QCOMPARE(at.flxStat, (TwipRect{120, 900, 7730, 1647.5F}));
        QCOMPARE(at.mscMain, (TwipRect{120, 240, 8170, 1777.5F}));
        QCOMPARE(at.cboLeft, (TwipRect{8440, 600, 2055, 315}));
        QCOMPARE(at.cboGroup, (TwipRect{8440, 1320, 2055, 315}));
    }

    void nothingIsCovered_data() {
        const test::DataTable<float, float, float> row("toolBar", "chromeHeight", "chromeWidth");
        row("just what is allowed", 600, 840, 170);
        row("high tool bar", 905, 705, 120);
        row("no chrome, low tool bar", 300, 0, 0);
    }
    void nothingIsCovered() {
        QFETCH(float, toolBar);
        QFETCH(float, chromeHeight);
        QFETCH(float, chromeWidth);
        for (const float statusBar : {345.F, 500.F}) {
            const WindowSizes sizes{.width = 12000,
                                    .height = 9001,
                                    .statusBarHeight = statusBar,
                                    .toolBarHeight = toolBar,
                                    .chromeWidth = chromeWidth,
                                    .chromeHeight = chromeHeight};
            const WindowLayout at = arrangeWindow(sizes);
            QVERIFY(at.Frame1.top >= toolBar && at.Frame1.top >= 600);
            QCOMPARE(at.Frame2.top, at.Frame1.top);
            const float innerHeight = sizes.height - chromeHeight;
            QVERIFY(at.Frame3.top + at.Frame3.height <= innerHeight - statusBar);
            const float innerWidth = sizes.width - chromeWidth;
            QVERIFY(at.Frame2.left + at.Frame2.width <= innerWidth);
            QVERIFY(at.Frame3.left + at.Frame3.width <= innerWidth);
            QVERIFY(at.Frame1.top + at.Frame1.height < at.Frame3.top);
            QVERIFY(at.Frame1.left + at.Frame1.width < at.Frame2.left);
        }
    }
};

QTEST_APPLESS_MAIN(LayoutTest)
#include "layoutTest.moc"
