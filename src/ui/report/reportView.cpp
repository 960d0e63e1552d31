#include "ui/report/reportView.h"

#include "ui/report/reportDocument.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <iterator>

namespace veltrona {

void ReportView::measureShown() {
    auto *layout = qobject_cast<ReportLayout *>(document()->documentLayout());
    if (!layout || m_isMeasuring)
        return;
    const QScopedValueRollback<bool> guard(m_isMeasuring, true);
    layout->setViewWidth(viewport()->width());
    QScrollBar &bar = *verticalScrollBar();
    for (bool haveMoved = true; haveMoved;) {
        const bool isAtEnd = bar.maximum() > 0 && bar.value() == bar.maximum();
        const QTextCursor kept =
            viewport()->rect().intersects(cursorRect()) ? textCursor() : cursorForPosition({0, 0});
        const int place = cursorRect(kept).top();
        haveMoved = layout->measure(bar.value(), bar.value() + viewport()->height());
        bar.setValue(isAtEnd ? bar.maximum() : bar.value() + cursorRect(kept).top() - place);
    }
}

void ReportView::scrollContentsBy(int dx, int dy) {
    QTextBrowser::scrollContentsBy(dx, dy);
    measureShown();
}

void ReportView::resizeEvent(QResizeEvent *event) {
    QTextBrowser::resizeEvent(event);
    measureShown();
}

/// In the rows the caret goes up and down by rows of cells, which Qt doesn't know as a table.
void ReportView::keyPressEvent(QKeyEvent *event) {
    const int page = viewport()->height();
    const struct {
        QKeySequence::StandardKey move, select;
        int pixels;
    } keys[] = {{QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, 1},
                {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, -1},
                {QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, page},
                {QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, -page}};
    const auto *key = std::find_if(std::begin(keys), std::end(keys), [&](const auto &each) {
        return event->matches(each.move) || event->matches(each.select);
    });
    const auto *layout = qobject_cast<const ReportLayout *>(document()->documentLayout());
    QTextCursor cursor = textCursor();
    const int moved =
        key == std::end(keys) || !layout ? -1 : layout->movedBy(cursor.position(), key->pixels);
    if (moved < 0)
        return QTextBrowser::keyPressEvent(event);
    cursor.setPosition(moved, event->matches(key->select) ? QTextCursor::KeepAnchor
                                                          : QTextCursor::MoveAnchor);
    setTextCursor(cursor);
    event->accept();
}

QMimeData *ReportView::createMimeDataFromSelection() const {
    const auto *report = qobject_cast<const ReportDocument *>(document());
    return report ? report->copied(textCursor()) : QTextBrowser::createMimeDataFromSelection();
}

} // namespace veltrona
