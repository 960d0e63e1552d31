#include "support/dialogRecorder.h"

#include <QTest>

namespace veltrona::test {

namespace {
void unexpected(const QString &what) {
    QTest::qFail(qPrintable(QStringLiteral("a box that nobody expected: ") + what), __FILE__,
                 __LINE__);
}
} // namespace

DialogRecorder::DialogRecorder() {
    services().dialogs = this;
}

DialogRecorder::~DialogRecorder() {
    services().dialogs = nullptr;
}

Answer DialogRecorder::message(MessageStyle style, const QString &title, const QString &text) {
    return messageWithDetails(style, title, text, {});
}

Answer DialogRecorder::messageWithDetails(MessageStyle style, const QString &title,
                                          const QString &text, const QString &details) {
    m_boxes.push_back({static_cast<int>(style), title, text, {}, details});
    if (whileOpen)
        whileOpen();
    if (m_answers.empty()) {
        unexpected(title + QStringLiteral(": ") + text);
        return Answer::Cancel;
    }
    const Answer answer = m_answers.front();
    m_answers.pop_front();
    return answer;
}

int DialogRecorder::choose(const QString &title, const QString &text, const QStringList &buttons) {
    m_boxes.push_back({0, title, text, buttons});
    if (whileOpen)
        whileOpen();
    if (m_choices.empty()) {
        unexpected(title + QStringLiteral(": ") + text);
        return static_cast<int>(buttons.size()) - 1;
    }
    const int choice = m_choices.front();
    m_choices.pop_front();
    return choice;
}

QString DialogRecorder::openFile(const FileDialogSetup &setup) {
    return nextFile(setup);
}

QString DialogRecorder::saveFile(const FileDialogSetup &setup) {
    return nextFile(setup);
}

QString DialogRecorder::nextFile(const FileDialogSetup &setup) {
    m_fileDialogs.push_back(setup);
    if (m_files.empty()) {
        unexpected(setup.title);
        return {};
    }
    const QString file = m_files.front();
    m_files.pop_front();
    return file;
}

} // namespace veltrona::test
