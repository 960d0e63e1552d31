// How Qt learns which accessible interface belongs to a view of ours.
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

} // namespace veltrona
