// Leads through the program step by step: waits until the screen is ready for a step, takes it, and
// gives the run up if that takes too long. Owns the list of steps. Steps go on inside the event
// loops of the dialogs that an earlier step has opened.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>

#include <functional>
#include <vector>

class QPoint;
class QWidget;

namespace veltrona::tour {

class Guide : public QObject {
    Q_OBJECT

public:
    /// Pictures go into `folder`.
    explicit Guide(const QString &folder);

    /// Takes `action` once `ready` has held for a moment; `aim` says in words what is waited for.
    void step(const QString &aim, std::function<bool()> ready, std::function<void()> action);
    void start();

    /// Tells the reason and ends the run in order. The first reason counts.
    void fail(const QString &why);
    /// Fails unless `holds`; gives `holds`.
    bool require(bool holds, const QString &why);
    /// Whether all steps were taken and none failed.
    bool succeeded() const { return m_failure.isEmpty() && m_next == m_steps.size(); }

    /// Saves what the screen shows of the program's windows as the next numbered picture.
    void takePicture(const QString &name);
    void saveText(const QString &name, const QString &text);
    QString file(const QString &name) const;
    /// What has been made, in order.
    QStringList files() const { return m_files; }
    void addFile(const QString &path);

private:
    struct Step {
        QString aim;
        std::function<bool()> ready;
        std::function<void()> action;
    };

    void comeBack();
    void look();

    QString m_folder;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    int m_pictures = 0;
    QStringList m_files;
    QString m_failure;
    QElapsedTimer m_waited; // since the step before was taken
    QElapsedTimer m_steady; // since the step is ready
};

// Input as a user gives it, through the window that has the focus or lies under the pointer.
void click(QWidget *widget);
void click(QWidget *widget, const QPoint &at);
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void type(const QString &text);

/// A named widget in the windows that can be seen, or null.
QWidget *visibleWidget(const QString &name);
/// Whether a window of that name is in front and takes the keys.
bool inFront(const QString &name);

} // namespace veltrona::tour
