// The grid's view: what it shows, what a refresh keeps, copying, colours, and what a screen reader
// is told.
#include "ui/views/controls/gridView.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "support/gridText.h"
#include "support/pixels.h"
#include "ui/views/colors.h"
#include "ui/views/controls/gridModel.h"
#include "ui/views/controls/itemDelegates.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>

using namespace veltrona;

namespace {

constexpr int columns = gridColumn::Count;

/// The statistics grid with a data row for each name: the name, then its numbers.
void fill(Grid &grid, const QStringList &names) {
    const RedrawPause pause(grid);
    initGrid(grid, false);
    grid.setColWidth(0, 3000);
    for (int col = 1; col < gridColumn::Shown; ++col)
        grid.setColWidth(col, 900);
    for (const QString &name : names) {
        grid.AddItem(name, grid.Rows() - 2);
        for (int col = 1; col < columns; ++col)
            grid.setTextMatrix(grid.Rows() - 3, col, QString::number(col * 1.5) + QChar('%'));
    }
    grid.setTextMatrix(grid.Rows() - 1, 0, "Summary");
}

QStringList names(int count) {
    QStringList result;
    for (int i = 0; i < count; ++i)
        result.append("Row " + QString::number(i));
    return result;
}

/// The rows as a refresh leaves them, of which those named so haven't earned back their cost.
void finish(Grid &grid, const QString &lost) {
    for (int row = 1; row < grid.Rows() - 2; ++row)
        if (grid.TextMatrix(row, 0) == lost)
            grid.setTextMatrix(row, gridColumn::Cost, "99");
    sumUp(grid, true);
}

struct Shown {
    Grid grid{columns, gridColumn::Shown};
    GridView view{grid};
    Shown(const QStringList &rows) {
        grid.columnNoteOf = columnNote;
        fill(grid, rows);
        view.resize(600, 200);
        view.show();
    }
    QModelIndex cell(int row, int col) const { return view.model()->index(row, col); }
};

} // namespace

class GridViewTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QAccessible::setActive(true); }

    void showsTheGridLive() {
        Shown shown(names(3));
        QAbstractItemModelTester tester(shown.view.model(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(shown.view.model()->rowCount(), 5);
        QCOMPARE(shown.view.model()->headerData(1, Qt::Horizontal, Qt::DisplayRole), "Clicks");
        QCOMPARE(shown.cell(4, 0).data(), "Summary");
        shown.grid.setTextMatrix(1, 1, "77");
        QCOMPARE(shown.cell(0, 1).data(), "77");
        shown.grid.setColWidth(2, 0);
        QVERIFY(shown.view.isColumnHidden(2));
        for (const int rows : {40, 0, 7}) {
            fill(shown.grid, names(rows));
            QCOMPARE(shown.view.model()->rowCount(), rows + 2);
        }
        QCOMPARE(shown.view.model()->columnCount(), 13);
    }

    // A repaint in the middle of a change finds fewer rows than the view has been told of.
    void survivesARepaintWhileRowsAreGone() {
        Shown shown(names(20));
        const RedrawPause pause(shown.grid);
        while (shown.grid.Rows() > 3)
            shown.grid.RemoveItem(1);
        shown.view.grab();
        QVERIFY(!shown.cell(15, 0).data().isValid());
        shown.view.textColor(shown.cell(15, 0));
    }

    void headingsAndRowsChangeInOneFrame() {
        struct Paints : QObject {
            QList<QObject *> painted;
            bool eventFilter(QObject *object, QEvent *event) override {
                if (event->type() == QEvent::Paint)
                    painted.append(object);
                return false;
            }
        };
        Shown shown(names(5));
        QVERIFY(QTest::qWaitForWindowExposed(&shown.view));
        QTest::qWait(0);
        Paints paints;
        QWidget *const parts[] = {shown.view.viewport(), shown.view.horizontalHeader()->viewport()};
        for (QWidget *part : parts)
            part->installEventFilter(&paints);
        fill(shown.grid, {"another", "node"});
        for (int pass = 0; pass < 10 && paints.painted.isEmpty(); ++pass)
            QCoreApplication::processEvents();
        for (QWidget *part : parts)
            QVERIFY(paints.painted.contains(part));
    }

    void aRefreshKeepsPlaceAndSelection() {
        Shown shown(names(100));
        shown.view.setCurrentIndex(shown.cell(40, 2));
        shown.view.selectionModel()->select(QItemSelection(shown.cell(40, 2), shown.cell(42, 3)),
                                            QItemSelectionModel::ClearAndSelect);
        shown.view.verticalScrollBar()->setValue(500);
        QStringList more = names(100);
        more.move(42, 0);
        more[42] = "new one"; // row 41 was here
        fill(shown.grid, more);
        QCOMPARE(shown.view.verticalScrollBar()->value(), 500);
        QCOMPARE(shown.view.currentIndex().siblingAtColumn(0).data(), "Row 40");
        QStringList kept;
        for (const QModelIndex &index : shown.view.selectionModel()->selectedIndexes()) {
            if (index.column() == 2)
                kept.append(index.siblingAtColumn(0).data().toString());
        }
        kept.sort();
        QCOMPARE(kept, QStringList({"Row 40", "Row 42"}));
    }

    void otherRowsTakeTheMarkAway() {
        Shown shown(names(5));
        QVERIFY(QTest::qWaitForWindowActive(&shown.view));
        for (const bool isFocused : {false, true}) {
            isFocused ? shown.view.setFocus() : shown.view.clearFocus();
            shown.view.selectionModel()->setCurrentIndex(shown.cell(2, 2),
                                                         QItemSelectionModel::ClearAndSelect);
            shown.grid.setSubject("another node");
            shown.grid.setSubject("another period " + QString::number(isFocused));
            QCOMPARE(shown.view.currentIndex(), isFocused ? shown.cell(0, 0) : QModelIndex());
            QCOMPARE(shown.view.selectionModel()->selectedIndexes().size(), isFocused ? 1 : 0);
            shown.view.setCurrentIndex(shown.cell(1, 1));
            shown.grid.setTextMatrix(1, 1, "5"); // the same subject
            QCOMPARE(shown.view.currentIndex(), shown.cell(1, 1));
        }
        shown.view.clearFocus();
        shown.grid.setSubject("a third node");
        shown.view.setFocus(Qt::TabFocusReason);
        QCOMPARE(shown.view.currentIndex(), shown.cell(0, 0));
    }

    void copiesATableOfTabs() {
        Shown shown({"a\tb\nc", "<b>O'Neil</b>", "東京"});
        QVERIFY(QTest::qWaitForWindowActive(&shown.view));
        shown.view.setFocus();
        shown.view.selectionModel()->select(QItemSelection(shown.cell(0, 0), shown.cell(1, 1)),
                                            QItemSelectionModel::ClearAndSelect);
        QTest::keySequence(&shown.view, QKeySequence(QKeySequence::Copy));
        QCOMPARE(QGuiApplication::clipboard()->text(), "a b c\t1.5%\n<b>O'Neil</b>\t1.5%");
        QTest::keyClick(&shown.view, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 "Campaigns\tClicks\na b c\t1.5%\n<b>O'Neil</b>\t1.5%");
        shown.view.selectionModel()->select(shown.cell(2, 2), QItemSelectionModel::Select);
        QCOMPARE(shown.view.selectedText(), "a b c\t1.5%\t\n<b>O'Neil</b>\t1.5%\t\n\t\t3%");
        shown.view.selectAll(); // but no hidden columns
        QCOMPARE(shown.view.selectedText().count('\t'), 5 * 12);
        QCOMPARE(shown.view.contextMenuPolicy(), Qt::ActionsContextMenu); // and by the mouse
    }

    void readableOnAnyBase() {
        for (int base = 0; base < 18 * 18 * 18; ++base) {
            const QColor paper(base % 18 * 15, base / 18 % 18 * 15, base / 18 / 18 * 15);
            for (const QColor color : {QColor(255, 0, 0), QColor(0, 128, 0), QColor(0, 0, 0)}) {
                const QColor shown = readableColor(color, paper);
                QVERIFY(contrast(shown, paper) >= 4.5);
                if (contrast(color, paper) >= 4.5)
                    QCOMPARE(shown, color);
            }
        }
        QCOMPARE(qRound(contrast(Qt::red, Qt::white) * 100), 400);
    }

    void mapsColorsUnlessTheBaseIsWhite() {
        Shown shown(names(2));
        shown.grid.setForeColor({0, 128, 0});
        test::colorRow(shown.grid, 2, {255, 0, 0});
        shown.view.setCurrentIndex(shown.cell(1, 1));
        QPalette palette = shown.view.palette();
        palette.setColor(QPalette::Base, Qt::white);
        shown.view.setPalette(palette);
        for (const auto &[row, color] : {std::pair(1, QColor(255, 0, 0)), {3, QColor(0, 128, 0)}})
            QCOMPARE(shown.view.textColor(shown.cell(row, 1)), color); // on tinted rows, too
        for (const QColor base : {QColor(20, 20, 40), QColor(255, 255, 254)}) {
            palette.setColor(QPalette::Base, base);
            palette.setColor(QPalette::Text, contrast(base, Qt::white) > 4 ? Qt::white : Qt::black);
            shown.view.setPalette(palette);
            for (const int row : {0, 1, 3})
                QVERIFY(contrast(shown.view.textColor(shown.cell(row, 1)),
                                 shown.view.baseColor(shown.cell(row, 1))) >= 4.5);
        }
        for (const int row : {1, 3}) // the current one, the summary
            QVERIFY(shown.view.baseColor(shown.cell(row, 4)) !=
                    shown.view.baseColor(shown.cell(0, 4)));
        QCOMPARE(shown.grid.cellColor(2, 1), (Rgb{255, 0, 0}));
    }

    void headingsStandOverTheirNumbers() {
        Shown shown({"x"});
        QHeaderView *heading = shown.view.horizontalHeader();
        const auto end = [](QWidget *widget, const QRect &part) {
            const QImage image = widget->grab(part.adjusted(0, 4, -2, -4)).toImage();
            return test::areaOf(image, [](const QColor &color) { return qGray(color.rgb()) < 128; })
                .right();
        };
        const QRect number = shown.view.visualRect(shown.cell(0, 1));
        const QRect above(number.left(), 0, number.width(), heading->height());
        const int right = end(shown.view.viewport(), number);
        QVERIFY(right > 0 && qAbs(end(heading->viewport(), above) - right) <= 1);
    }

    // The name of the loss has more ink than the same name in nearly the same shade.
    void marksALossBesideItsText() {
        Shown shown({"x", "x"});
        finish(shown.grid, "x");
        QCOMPARE(shown.grid.cellColor(1, 0), (Rgb{255, 0, 0}));
        test::colorRow(shown.grid, 2, {254, 0, 0});
        shown.view.clearSelection();
        const QImage image = shown.view.viewport()->grab().toImage();
        const auto inked = [&](int row, int col) {
            const QImage cell = image.copy(shown.view.visualRect(shown.cell(row, col)));
            int pixels = 0;
            for (int at = 0; at < cell.width() * cell.height(); ++at)
                pixels += qGreen(cell.pixel(at % cell.width(), at / cell.width())) < 128 ? 1 : 0;
            return pixels;
        };
        QVERIFY(inked(0, 0) >= inked(1, 0) + 6);
        QCOMPARE(inked(0, 1), inked(1, 1)); // once in a row

        for (const double room : {4., 5., 6., 9., 200.}) {
            const QRectF mark = lossMarkBetween(40, 40 + room, 10, 15);
            QVERIFY(mark.left() >= (room < 5 ? 40 : 41) && mark.right() <= 39 + room);
            QVERIFY(mark.width() >= 3 && mark.left() <= 44);
        }
    }

    void theNoticeIsPaintedBelowTheRows() {
        Shown shown({});
        const auto below = [&] {
            const QImage image = shown.view.viewport()->grab().toImage();
            const int rows = shown.view.verticalHeader()->length();
            return image.copy(0, rows + 1, image.width(), image.height() - rows - 1);
        };
        const QImage bare = below();
        const QStringList cells = test::gridText(shown.grid);
        shown.grid.setNotice("There are no records.");
        const QImage noted = below();
        QVERIFY(noted != bare);
        shown.grid.setNotice("There are none.");
        QVERIFY(below() != noted);
        QCOMPARE(test::gridText(shown.grid), cells);
        shown.grid.setNotice(QString());
        QCOMPARE(below(), bare);
    }

    void tellsElidedNamesInPlainText() {
        const QString name = "<img src=x> sale " + QString(80, QLatin1Char('w'));
        Shown shown({name, "short"});
        QCOMPARE(shown.cell(0, 0).data(), name);
        const auto toolTip = [&](int row) {
            const QPoint at = shown.view.visualRect(shown.cell(row, 0)).center();
            QHelpEvent event(QEvent::ToolTip, at, shown.view.viewport()->mapToGlobal(at));
            QCoreApplication::sendEvent(shown.view.viewport(), &event);
            return QToolTip::text();
        };
        QVERIFY(toolTip(0).contains("&lt;img src=x&gt; sale www"));
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        QCOMPARE(toolTip(1), QString());
        shown.grid.notesOf = [](int row, int col) {
            return QStringList(QString::number(row) + ' ' + QString::number(col));
        };
        QCOMPARE(shown.cell(1, 1).data(Qt::ToolTipRole), "short\nClicks: 1.5%\n2 1");
        QCOMPARE(shown.cell(2, 1).data(Qt::ToolTipRole), ""); // the spacer
        QVERIFY(shown.cell(0, 1).data(Qt::ToolTipRole).toString().endsWith("\nClicks: 1.5%\n1 1"));
    }

    void isReadOut() {
        Shown shown({"Brand", "Sale"});
        finish(shown.grid, "Sale");
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&shown.view);
        QAccessibleTableInterface *table = face->tableInterface();
        QVERIFY(table);
        QCOMPARE(table->columnCount(), 13);
        QCOMPARE(table->columnDescription(1), "Clicks");
        QCOMPARE(table->cellAt(0, 1)->text(QAccessible::Name), "1.5%");
        QCOMPARE(table->cellAt(0, 1)->text(QAccessible::Description), QString());
        const auto header = table->cellAt(0, 1)->tableCellInterface()->columnHeaderCells().first();
        QCOMPARE(header->text(QAccessible::Name), "Clicks");
        QVERIFY(header->text(QAccessible::Description).endsWith("\nUnit: clicks."));
        QCOMPARE(columnNote(gridColumn::PositionCount), QString());
        // The loss belongs to the name. Of a row read as a whole, name and figure are heard.
        shown.view.setCurrentIndex(shown.cell(1, gridColumn::Cost));
        QString heard;
        for (int col = 0; col < table->columnCount(); ++col) {
            QAccessibleInterface *cell = table->cellAt(1, col);
            QCOMPARE(face->child(face->indexOfChild(cell)), cell);
            if (!cell->state().offscreen)
                heard += cell->text(QAccessible::Name) + u'|';
        }
        QCOMPARE(heard, "Sale, loss: did not earn back its cost|99|");
        QVERIFY(!table->cellAt(0, 2)->state().offscreen); // of another row
        QCOMPARE(face->focusChild(),
                 shown.view.hasFocus() ? table->cellAt(1, gridColumn::Cost) : nullptr);
        shown.grid.notesOf = [](int row, int col) {
            return QStringList{QString("%1/%2").arg(row).arg(col), "And more."};
        };
        const auto described = [&](int row, int col) {
            shown.view.setCurrentIndex(shown.cell(row, col));
            return table->cellAt(row, col)->text(QAccessible::Description);
        };
        QCOMPARE(described(1, gridColumn::Cost), "2/5. And more.");
        QCOMPARE(described(1, gridColumn::Name), "2/0. And more."); // of its loss
        QCOMPARE(described(0, gridColumn::Name).left(10), "The parts ");
        QVERIFY(described(0, gridColumn::Cost).startsWith("1/5. And more. Costs of all records,"));
        QCOMPARE(described(2, gridColumn::Cost), QString()); // the spacer
        QCOMPARE(table->cellAt(2, gridColumn::Name)->text(QAccessible::Name), QString());
        shown.grid.setTextMatrix(2, gridColumn::Name, QString());
        QCOMPARE(table->cellAt(1, gridColumn::Name)->text(QAccessible::Name),
                 "(no name), loss: did not earn back its cost");
        shown.grid.setNotice("No records.\nImport some.");
        QCOMPARE(face->text(QAccessible::Description), "No records. Import some.");
        QCOMPARE(described(0, gridColumn::Name), "No records. Import some.");
        QVERIFY(described(0, gridColumn::Clicks).contains("Unit: clicks."));
        fill(shown.grid, names(30)); // Qt's cells survive other rows
        QCOMPARE(table->rowCount(), 32);
        QCOMPARE(table->cellAt(29, 0)->text(QAccessible::Name), "Row 29");
    }
};

QTEST_MAIN(GridViewTest)
#include "gridViewTest.moc"
