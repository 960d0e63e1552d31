#include "ui/views/accessible/announcement.h"

#include "ui/views/accessible/screenReader.h"

#include <QAccessibleObject>
#include <QWidget>

namespace veltrona {

namespace {

/// Qt 6.4 has no event for announcements, but screen readers say a notification that shows up. A
/// new one for each sentence, since they cache names.
class Announcement : public QObject {
    Q_OBJECT
public:
    Announcement(const QString &sentence, QWidget *window)
        : QObject(window), m_sentence(sentence) {}
    const QString &sentence() const { return m_sentence; }

private:
    QString m_sentence;
};

class AnnouncementAccessible : public QAccessibleObject {
public:
    explicit AnnouncementAccessible(Announcement &announcement)
        : QAccessibleObject(&announcement), m_announcement(announcement) {}

    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(m_announcement.parent());
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Notification; }
    QAccessible::State state() const override { return {}; }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_announcement.sentence() : QString();
    }

private:
    Announcement &m_announcement;
};

} // namespace

void announce(const QWidget &view, const QString &sentence) {
    if (!QAccessible::isActive() || sentence.isEmpty())
        return;
    installAccessible<Announcement, AnnouncementAccessible>();
    QWidget *window = view.window();
    delete window->findChild<Announcement *>(QString(), Qt::FindDirectChildrenOnly);
    QAccessibleEvent shown(new Announcement(sentence, window), QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

void announceCopy(const QWidget &view) {
    announce(view, QStringLiteral("Copied."));
}

} // namespace veltrona

#include "announcement.moc"
