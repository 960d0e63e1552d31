#include "support/dialogRecorder.h"

#include <QTest>

namespace veltrona::test {

namespace {
/// The next of the prepared answers; without one the test fails.
template<class Given>
Given take(std::deque<Given> &prepared, const Given &otherwise, const QString &asked) {
    if (prepared.empty()) {
        QTest::qFail(qPrintable("a box that nobody expected: " + asked), __FILE__, __LINE__);
        return otherwise;
    }
    const Given next = prepared.front();
    prepared.pop_front();
    return next;
}
} // namespace

DialogRecorder::DialogRecorder() {
    services().dialogs = this;
}

DialogRecorder::~DialogRecorder() {
    services().dialogs = nullptr;
    if (!allUsed() && QTest::currentTestFunction() && !QTest::currentTestFailed())
        QTest::qFail("not all prepared answers were used", __FILE__, __LINE__);
}

Answer DialogRecorder::message(MessageStyle style, const QString &title, const QString &text,
                               const QString &details) {
    m_boxes.push_back({static_cast<int>(style), title, text, {}, details});
    if (whileOpen)
        whileOpen();
    return take(m_answers, Answer::Cancel, title + ": " + text);
}

int DialogRecorder::choose(const QString &title, const QString &text, const QStringList &buttons) {
    m_boxes.push_back({0, title, text, buttons});
    if (whileOpen)
        whileOpen();
    return take(m_choices, static_cast<int>(buttons.size()) - 1, title + ": " + text);
}

QString DialogRecorder::openFile(const FileDialogSetup &setup) {
    return nextFile(setup);
}

QString DialogRecorder::saveFile(const FileDialogSetup &setup) {
    return nextFile(setup);
}

QString DialogRecorder::nextFile(const FileDialogSetup &setup) {
    m_fileDialogs.push_back(setup);
    return take(m_files, QString(), setup.title);
}

} // namespace veltrona::test
