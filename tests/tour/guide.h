// Leads through the program step by step: waits until the screen is ready for a step, takes it, and
// gives the run up if that takes too long or a message comes up that no step waits for. Steps go on
// inside the event loops of the dialogs that an earlier step has opened.
#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <functional>
#include <vector>

class QPoint;
class QWidget;

namespace veltrona::tour {

class Guide : public QObject {
public:
    /// Pictures go into `folder`.
    explicit Guide(const QString &folder) : m_folder(folder) {}

    /// Takes `action` once `ready` has held for a moment; `aim` says in words what is waited for.
    void step(const QString &aim, const std::function<bool()> &ready,
              const std::function<void()> &action) {
        m_steps.push_back({aim, ready, action});
    }
    void start();
    /// Whether all steps were taken and none failed.
    bool succeeded() const { return !m_hasFailed && m_next == m_steps.size(); }
    /// Unless `holds`, reports the reason and ends the run in order. The first reason counts.
    void require(bool holds, const QString &why);

    /// Saves what the screen shows of the program's windows as the next numbered picture.
    void takePicture(const QString &name);
    QString file(const QString &name) const { return m_folder + u'/' + name; }

private:
    struct Step {
        QString aim;
        std::function<bool()> ready;
        std::function<void()> action;
    };
    void look();

    QString m_folder;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    int m_pictures = 0;
    bool m_hasFailed = false;
    QElapsedTimer m_waited; // since the step before was taken
    QElapsedTimer m_steady; // since the step is ready
};

// Input as a user gives it, through the window that has the focus or lies under the pointer.
void click(QWidget *widget, const QPoint &at);
void click(QWidget *widget);
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// A named widget in the windows that can be seen; there must be one.
QWidget *named(const QString &name);
/// Whether a window of that name is in front and takes the keys.
bool inFront(const QString &name);

} // namespace veltrona::tour
