// A modal form of a test: opened, driven by a script while it is up, and closed again.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include <functional>

namespace veltrona::test {

/// Runs `open`, which shows a form of this class, and `script` in it, which must leave it closed.
template<class Form>
void during(const std::function<void()> &open, const std::function<void(Form &)> &script) {
    bool ran = false;
    QTimer::singleShot(0, qApp, [&] {
        auto *form = qobject_cast<Form *>(QApplication::activeModalWidget());
        QVERIFY(form && QTest::qWaitForWindowExposed(form));
        QCoreApplication::processEvents(); // a changed font comes by an event
        ran = true;
        script(*form);
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
