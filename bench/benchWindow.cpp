#include "benchWindow.h"

#include "core/analysis/dateRanges.h"
#include "core/shell/modMain.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>

namespace veltrona::bench {

Answer ChoosesReport::message(MessageStyle, const QString &, const QString &text, const QString &) {
    qFatal("%s", qPrintable(text));
}

int ChoosesReport::choose(const QString &, const QString &text, const QStringList &) {
    qFatal("%s", qPrintable(text));
}

Window::Window(const QString &project) {
    modMain::DbFileName = project;
    m_window.initApp(true);
    m_window.show();
    QCoreApplication::processEvents();
}

Window::~Window() {
    m_window.close();
}

void Window::chooseAllDates() {
    m_window.cboRange.setListIndex(static_cast<int>(RangePreset::All));
    QCoreApplication::processEvents();
}

void Window::rest(std::chrono::nanoseconds duration) {
    QEventLoop loop;
    QTimer::singleShot(duration_cast<std::chrono::milliseconds>(duration), &loop,
                       &QEventLoop::quit);
    loop.exec();
}

void Window::press(Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, {});
    QCoreApplication::sendEvent(m_window.findChild<QWidget *>(QStringLiteral("treeList")), &event);
    QCoreApplication::processEvents();
}

void Window::click(int node) {
    m_window.treeList.setSelectedItem(m_window.treeList.Nodes().Item(node));
    m_window.treeList.onNodeClick(m_window.treeList.SelectedItem());
    QCoreApplication::processEvents();
}

void Window::chooseMetric(int index) {
    m_window.cboLeft.setListIndex(index);
    QCoreApplication::processEvents();
}

void Window::import(const QString &report) {
    m_dialogs.m_report = report;
    m_window.impRep();
    QCoreApplication::processEvents();
}

} // namespace veltrona::bench
