#include "tour/guide.h"

#include <QApplication>
#include <QMessageBox>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTextStream>
#include <QTimer>

namespace veltrona::tour {

/// Each look has a timer of its own: one timer doesn't fire again inside its own event loop.
void Guide::start() {
    constexpr int lookEvery = 20; // milliseconds
    m_waited.start();
    QTimer::singleShot(lookEvery, this, &Guide::look);
}

void Guide::look() {
    constexpr int steadyFor = 150; // milliseconds, in which the window manager draws its frames
    constexpr int longestWait = 30'000;
    if (m_hasFailed || m_next == m_steps.size())
        return;
    const Step step = m_steps[m_next];
    const bool isReady = step.ready();
    const qint64 waited = m_waited.elapsed();
    if (isReady && m_steady.isValid() && m_steady.elapsed() >= steadyFor) {
        ++m_next;
        m_steady.invalidate();
        start(); // the action may open a dialog and come back after later steps
        return step.action();
    }
    if (!isReady)
        m_steady.invalidate();
    else if (!m_steady.isValid())
        m_steady.start();
    // One that was just answered may still be there.
    const auto *box = qobject_cast<QMessageBox *>(QApplication::activeWindow());
    require(isReady || !box || waited < 10 * steadyFor,
            "a message that nobody expected: " + (box ? box->text() : QString()));
    require(isReady || waited < longestWait, "waited in vain for " + step.aim);
    QTimer::singleShot(steadyFor / 8, this, &Guide::look);
}

void Guide::require(bool holds, const QString &why) {
    if (holds || m_hasFailed)
        return;
    takePicture("failed");
    m_hasFailed = true;
    QTextStream(stderr) << "The tour is given up: " << why << Qt::endl;
    QCoreApplication::exit(1);
}

void Guide::takePicture(const QString &name) {
    QRect seen;
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            seen |= window->frameGeometry();
    }
    QScreen *screen = QGuiApplication::primaryScreen();
    const qreal ratio = screen->devicePixelRatio();
    seen &= screen->geometry();
    const QPixmap picture =
        screen->grabWindow(0).copy(QRect(seen.topLeft() * ratio, seen.size() * ratio));
    const QString number = QString::number(++m_pictures).rightJustified(2, u'0');
    require(m_hasFailed || picture.save(file(number + u'-' + name + ".png")),
            "can't save the picture " + name);
}

void click(QWidget *widget, const QPoint &at) {
    QWidget *window = widget->window();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, widget->mapTo(window, at));
}

void click(QWidget *widget) {
    click(widget, widget->rect().center());
}

void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (QWindow *window = QGuiApplication::focusWindow())
        QTest::keyClick(window, key, modifiers);
}

QWidget *named(const QString &name) {
    for (QWidget *window : QApplication::topLevelWidgets()) {
        auto *widget = window->objectName() == name ? window : window->findChild<QWidget *>(name);
        if (window->isVisible() && widget && widget->isVisible())
            return widget;
    }
    qFatal("no widget %s can be seen", qPrintable(name));
}

bool inFront(const QString &name) {
    const QWidget *window = QApplication::activeWindow();
    return window && window->objectName() == name && !QApplication::activePopupWidget();
}

} // namespace veltrona::tour
