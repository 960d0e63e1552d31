// A modal form of a test: opened, driven by a script while it is up, and closed again.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

#include <functional>

namespace veltrona::test {

/// Runs a script of a dialog. A failed check returns from the script before it has closed the
/// dialog, which would wait for ever: it is closed here.
template<class Form, class Script>
void runIn(Form *form, const Script &script) {
    const QPointer<QDialog> dialog(static_cast<QDialog *>(form));
    script(form);
    if (dialog && dialog->isVisible() && QTest::currentTestFailed())
        dialog->reject();
}

/// Runs `open`, which shows a form of this class, and `script` in it, which must leave it closed.
template<class Form>
void during(const std::function<void()> &open, const std::function<void(Form &)> &script) {
    bool ran = false;
    QTimer::singleShot(0, qApp, [&] {
        auto *form = qobject_cast<Form *>(QApplication::activeModalWidget());
        if (!form || !QTest::qWaitForWindowExposed(form)) {
            QTest::qFail("the form didn't come up", __FILE__, __LINE__);
            if (QWidget *other = QApplication::activeModalWidget())
                other->close();
            return;
        }
        QCoreApplication::processEvents(); // a changed font comes by an event
        ran = true;
        runIn(form, [&](Form *shown) { script(*shown); });
        if (form->isVisible()) {
            QTest::qFail("the script left the form open", __FILE__, __LINE__);
            form->done(0);
        }
    });
    open();
    QVERIFY(ran);
}

/// Where a direct child is smaller than it asks for, covered, or out of its parent; empty if all is
/// well. What `mayBeCut` says of a child lets it be smaller.
inline QString misplaced(const QWidget &parent,
                         const std::function<bool(const QWidget &)> &mayBeCut) {
    QStringList faults;
    QRegion taken;
    for (const QWidget *control :
         parent.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!control->isVisible())
            continue;
        const QRect at = control->geometry();
        if (!parent.rect().contains(at) || taken.intersects(at))
            faults << control->objectName() + " is out of its place";
        taken += at;
        if (!mayBeCut(*control) && at.size().expandedTo(control->sizeHint()) != at.size())
            faults << control->objectName() + " is cut";
    }
    return faults.join("; ");
}

/// Where a window leaves its screen, or a control that is read or used can't be seen whole, not
/// even by scrolling; empty if all is well.
inline QString unreachable(QWidget &window) {
    QStringList faults;
    if (!window.screen()->availableGeometry().contains(window.frameGeometry()))
        faults << window.objectName() + " leaves the screen";
    auto *scrolled = window.findChild<QScrollArea *>();
    for (QWidget *control : window.findChildren<QWidget *>()) {
        const bool isUsed =
            qobject_cast<QLabel *>(control) || qobject_cast<QAbstractButton *>(control) ||
            qobject_cast<QComboBox *>(control) || qobject_cast<QDateEdit *>(control) ||
            qobject_cast<QLineEdit *>(control);
        if (!isUsed || !control->isVisible() || !window.isAncestorOf(control))
            continue;
        QSize size = control->size();
        if (scrolled && scrolled->isAncestorOf(control)) {
            const QPoint middle = control->mapTo(scrolled->widget(), control->rect().center());
            scrolled->ensureVisible(middle.x(), middle.y(), size.width() / 2, size.height() / 2);
            // What is larger than the area is shown piece by piece.
            size = size.boundedTo(scrolled->viewport()->size());
        }
        size -= QSize(1, 1); // twips are rounded
        const QSize seen = control->visibleRegion().boundingRect().size();
        if (seen.expandedTo(size) != seen)
            faults << QString("%1 can't be seen whole (%2 x %3 of %4 x %5)")
                          .arg(control->objectName())
                          .arg(seen.width())
                          .arg(seen.height())
                          .arg(size.width())
                          .arg(size.height());
    }
    return faults.join("; ");
}

} // namespace veltrona::test
