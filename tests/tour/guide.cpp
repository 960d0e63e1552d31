#include "tour/guide.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

namespace veltrona::tour {

namespace {

// In milliseconds.
constexpr int lookEvery = 20;
constexpr int steadyFor = 150; // the window manager needs a moment to draw its frames
constexpr int longestWait = 30'000;

} // namespace

Guide::Guide(const QString &folder) : m_folder(folder) {}

void Guide::step(const QString &aim, std::function<bool()> ready, std::function<void()> action) {
    m_steps.push_back({aim, std::move(ready), std::move(action)});
}

void Guide::start() {
    m_waited.start();
    comeBack();
}

/// Each look has a timer of its own: one timer doesn't fire again inside its own event loop.
void Guide::comeBack() {
    QTimer::singleShot(lookEvery, this, &Guide::look);
}

void Guide::look() {
    if (!m_failure.isEmpty() || m_next == m_steps.size())
        return;
    const Step &step = m_steps[m_next];
    comeBack();
    if (!step.ready()) {
        m_steady.invalidate();
        if (m_waited.elapsed() > longestWait)
            fail(QString("waited in vain for %1").arg(step.aim));
        return;
    }
    if (!m_steady.isValid())
        m_steady.start();
    if (m_steady.elapsed() < steadyFor)
        return;
    // The action may open a dialog and come back after later steps.
    ++m_next;
    m_steady.invalidate();
    m_waited.start();
    step.action();
}

void Guide::fail(const QString &why) {
    if (!m_failure.isEmpty())
        return;
    takePicture("failed");
    m_failure = why;
    QTextStream(stderr) << "The tour is given up: " << why << Qt::endl;
    QCoreApplication::exit(1);
}

bool Guide::require(bool holds, const QString &why) {
    if (!holds)
        fail(why);
    return holds;
}

QString Guide::file(const QString &name) const {
    return QDir(m_folder).filePath(name);
}

void Guide::addFile(const QString &path) {
    m_files += path;
}

void Guide::takePicture(const QString &name) {
    if (!m_failure.isEmpty())
        return;
    QRect seen;
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            seen |= window->frameGeometry();
    }
    QScreen *screen = QGuiApplication::primaryScreen();
    const QPixmap whole = screen->grabWindow(0);
    const qreal ratio = screen->devicePixelRatio();
    seen &= screen->geometry();
    const QString path =
        file(QString("%1-%2.png").arg(++m_pictures, 2, 10, QLatin1Char('0')).arg(name));
    if (whole.copy(QRect(seen.topLeft() * ratio, seen.size() * ratio)).save(path))
        addFile(path);
    else
        fail(QString("can't save the picture %1").arg(path));
}

void Guide::saveText(const QString &name, const QString &text) {
    QFile out(file(name));
    if (require(out.open(QIODevice::WriteOnly) && out.write(text.toUtf8()) >= 0 && out.flush(),
                QString("can't write %1").arg(out.fileName())))
        addFile(out.fileName());
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

void type(const QString &text) {
    for (const QChar letter : text) {
        if (QWindow *window = QGuiApplication::focusWindow())
            QTest::keyClick(window, letter.toLatin1());
    }
}

QWidget *visibleWidget(const QString &name) {
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (!window->isVisible())
            continue;
        if (window->objectName() == name)
            return window;
        if (auto *widget = window->findChild<QWidget *>(name); widget && widget->isVisible())
            return widget;
    }
    return nullptr;
}

bool inFront(const QString &name) {
    const QWidget *window = QApplication::activeWindow();
    return window && window->objectName() == name && !QApplication::activePopupWidget();
}

} // namespace veltrona::tour
