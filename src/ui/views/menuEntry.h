// The two entries of a view's context menu, which comes up by mouse, menu key and Shift+F10.
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QWidget>

#include <functional>

namespace veltrona {

/// Each entry shows its first key; all keys work while the view has the focus.
inline void addCopyEntries(QWidget &view, const QString &text, const std::function<void()> &copy,
                           const QString &otherText, const std::function<void()> &copyOther) {
    const auto add = [&view](const QString &caption, const QList<QKeySequence> &keys,
                             const std::function<void()> &handler) {
        QAction *entry = view.addAction(caption, &view, handler);
        entry->setShortcuts(keys);
        entry->setShortcutContext(Qt::WidgetShortcut);
        entry->setShortcutVisibleInContextMenu(true);
    };
    add(text, QKeySequence::keyBindings(QKeySequence::Copy), copy);
    add(otherText, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C)}, copyOther);
    view.setContextMenuPolicy(Qt::ActionsContextMenu);
}

} // namespace veltrona
