// frmMain: files that are dropped on the window, rows of the grid that are opened, and what the
// grid's figures say of themselves.
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/shell/modMain.h"
#include "ui/shell/droppedFiles.h"
#include "ui/shell/frmMain.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QFileInfo>

namespace veltrona {

namespace {

/// The files stay where they are, whatever the source would rather do with them.
void takeAsCopy(QDropEvent &event, bool takes) {
    if (takes && event.possibleActions().testFlag(Qt::CopyAction)) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
    } else {
        event.ignore();
    }
}

/// What a message about the report at `place` says besides, if there is more than one.
QString noteAbout(const QStringList &reports, qsizetype place) {
    if (reports.size() == 1)
        return {};
    const auto quoted = [](const QString &path) {
        return u'"' + QFileInfo(path).fileName() + u'"';
    };
    QStringList left;
    for (const QString &path : reports.sliced(place + 1))
        left.append(quoted(path));
    QString note = QStringLiteral("\r\rThis was the report ") + quoted(reports[place]) + u'.';
    if (!left.isEmpty())
        note += QStringLiteral(" Not read any more: ") + left.join(QStringLiteral(", ")) + u'.';
    return note;
}

} // namespace

void frmMain::dragEnterEvent(QDragEnterEvent *event) {
    takeAsCopy(*event,
               !QApplication::activeModalWidget() && !droppedFiles(*event->mimeData()).isEmpty());
}

void frmMain::dragMoveEvent(QDragMoveEvent *event) {
    takeAsCopy(*event, !QApplication::activeModalWidget());
}

void frmMain::dropEvent(QDropEvent *event) {
    const DroppedFiles files = droppedFiles(*event->mimeData());
    takeAsCopy(*event, !QApplication::activeModalWidget() && !files.isEmpty());
    if (!event->isAccepted())
        return;
    activateWindow();
    // Once the event is through: the program that the files come from waits for its end.
    QMetaObject::invokeMethod(
        this,
        [this, files] {
            runCommand([&] {
                if (files.project.isEmpty())
                    importReports(files.reports);
                else
                    switchProject(files.project, QString());
            });
        },
        Qt::QueuedConnection);
}

void frmMain::importReports(const QStringList &paths) {
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const QString note = noteAbout(paths, i);
        try {
            if (!importReport(paths[i], note))
                return;
        } catch (const Failure &failure) {
            throw Failure(failure.number(), failure.text() + note);
        }
    }
}

void frmMain::openRow(int row) {
    // After a refresh that failed the rows may be those of another node.
    const bool isData = row >= gridRow::FirstData && row < gridRow::spacer(flxStat.Rows());
    if (!isData || m_viewBehind || !treeList.SelectedItem())
        return;
    TreeNode *node = nodeOfRow(*treeList.SelectedItem(), flxStat.TextMatrix(row, gridColumn::Name));
    if (!node)
        return;
    treeList.setSelectedItem(node);
    treeList_NodeClick(node);
}

void frmMain::openContextMenu() {
    QWidget *view = focusWidget();
    if (!view)
        return;
    const QPoint at = view->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, view->mapToGlobal(at));
    QCoreApplication::sendEvent(view, &event);
}

QStringList frmMain::figureNotes(int row, int col) {
    if (m_viewBehind || !treeList.SelectedItem())
        return {};
    if (!m_notes) {
        const sqlite::ReadTransaction reading(*modMain::DbConn);
        m_notes =
            FigureNotes::query(*modMain::Records, pathOf(*treeList.SelectedItem()), m_shownRange);
    }
    return row == gridRow::summary(flxStat.Rows())
               ? m_notes->ofSummary(col)
               : m_notes->ofRow(flxStat.TextMatrix(row, gridColumn::Name), col);
}

} // namespace veltrona
