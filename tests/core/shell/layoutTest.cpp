// The resize rules of the main window, against numbers worked out by hand.
#include "core/shell/layout.h"

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
};

QTEST_APPLESS_MAIN(LayoutTest)
#include "layoutTest.moc"
