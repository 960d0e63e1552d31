// An entry of a view's own context menu, which comes up by mouse, menu key and Shift+F10.
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QWidget>

namespace veltrona {

/// The entry shows its first key, and all of its keys work while the view has the focus.
template<typename Handler>
void addMenuEntry(QWidget &view, const QString &text, const QList<QKeySequence> &keys,
                  Handler handler) {
    auto *entry = new QAction(text, &view);
    entry->setShortcuts(keys);
    entry->setShortcutContext(Qt::WidgetShortcut);
    entry->setShortcutVisibleInContextMenu(true);
    QObject::connect(entry, &QAction::triggered, &view, handler);
    view.addAction(entry);
    view.setContextMenuPolicy(Qt::ActionsContextMenu);
}

inline QList<QKeySequence> copyKeys() {
    return QKeySequence::keyBindings(QKeySequence::Copy);
}
inline QList<QKeySequence> secondCopyKeys() {
    return {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C)};
}

} // namespace veltrona
