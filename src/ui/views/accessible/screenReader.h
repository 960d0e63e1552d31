// What all accessible interfaces share: how Qt learns which one belongs to a view, and how a screen
// reader is notified of the focus.
#pragma once

#include <QAccessible>

namespace veltrona {

/// Makes Qt ask for an Accessible for each View; once is enough, more does no harm.
template<class View, class Accessible>
void installAccessible() {
    QAccessible::installFactory([](const QString &, QObject *object) -> QAccessibleInterface * {
        auto *view = qobject_cast<View *>(object);
        return view ? new Accessible(*view) : nullptr;
    });
}

/// Null without a view, and while no assistive software listens.
inline QAccessibleInterface *accessibleOf(QObject *view) {
    return QAccessible::isActive() ? QAccessible::queryAccessibleInterface(view) : nullptr;
}

/// Reports that `item` has the focus; null if there is none.
inline void notifyFocus(QAccessibleInterface *item) {
    if (!item)
        return;
    QAccessibleEvent focused(item, QAccessible::Focus);
    QAccessible::updateAccessibility(&focused);
}

} // namespace veltrona
