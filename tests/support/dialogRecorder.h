// Dialogs for tests: answers from a list prepared beforehand, records everything that was asked,
// and fails the test on a box that nobody expected instead of hanging it.
#pragma once

#include "core/platform/dialogs/dialogs.h"

#include <QList>

#include <deque>
#include <functional>

namespace veltrona::test {

struct ShownBox {
    int style = 0; // 0 for choose()
    QString title;
    QString text;
    QStringList buttons; // of choose()
    QString details = {};
};

class DialogRecorder : public Dialogs {
public:
    /// Installs itself; the destructor uninstalls it, and fails the test if an answer is left over.
    DialogRecorder();
    ~DialogRecorder() override;

    void expectAnswer(Answer answer) { m_answers.push_back(answer); }
    void expectChoice(int button) { m_choices.push_back(button); }
    /// The empty text is a cancel.
    void expectFile(const QString &path) { m_files.push_back(path); }

    const QList<ShownBox> &boxes() const { return m_boxes; }
    const QList<FileDialogSetup> &fileDialogs() const { return m_fileDialogs; }
    /// Runs while a box is "up", before it is answered.
    std::function<void()> whileOpen;
    /// True once all that was prepared has been used.
    bool allUsed() const { return m_answers.empty() && m_choices.empty() && m_files.empty(); }

    Answer message(MessageStyle style, const QString &title, const QString &text,
                   const QString &details = {}) override;
    int choose(const QString &title, const QString &text, const QStringList &buttons) override;
    QString openFile(const FileDialogSetup &setup) override;
    QString saveFile(const FileDialogSetup &setup) override;

private:
    QString nextFile(const FileDialogSetup &setup);

    std::deque<Answer> m_answers;
    std::deque<int> m_choices;
    std::deque<QString> m_files;
    QList<ShownBox> m_boxes;
    QList<FileDialogSetup> m_fileDialogs;
};

} // namespace veltrona::test
