// A modal form of a test: opened, driven by a script while it is up, and closed again.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
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

} // namespace veltrona::test
