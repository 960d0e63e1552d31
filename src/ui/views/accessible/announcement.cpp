#include "ui/views/accessible/announcement.h"

#include <QAccessibleObject>
#include <QWidget>

#include <utility>

namespace veltrona {

namespace {

/// Qt 6.4 has no event for announcements, but screen readers say a notification that shows up.
class Announcement : public QAccessibleObject {
public:
    Announcement(QObject *object, QString sentence)
        : QAccessibleObject(object), m_sentence(std::move(sentence)) {}

    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(object()->parent());
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Notification; }
    QAccessible::State state() const override { return {}; }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_sentence : QString();
    }

private:
    QString m_sentence;
};

} // namespace

void announce(const QWidget &view, const QString &sentence) {
    if (!QAccessible::isActive() || sentence.isEmpty())
        return;
    const QString name = QStringLiteral("announcement");
    QWidget *window = view.window();
    // A new object for each sentence, since screen readers cache names.
    delete window->findChild<QObject *>(name, Qt::FindDirectChildrenOnly);
    auto *object = new QObject(window);
    object->setObjectName(name);
    auto *announcement = new Announcement(object, sentence); // Qt's cache owns it
    QAccessible::registerAccessibleInterface(announcement);
    QAccessibleEvent shown(announcement, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

void announceCopy(const QWidget &view) {
    announce(view, QStringLiteral("Copied."));
}

} // namespace veltrona
