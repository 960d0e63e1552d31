// The entries of a view's context menu, which comes up by mouse, menu key and Shift+F10.
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QWidget>

#include <functional>

namespace veltrona {

/// The entry shows its first key; all keys work while the view has the focus.
inline void addEntry(QWidget &view, const QString &caption, const QList<QKeySequence> &keys,
                     const std::function<void()> &handler) {
    QAction *entry = view.addAction(caption, &view, handler);
    entry->setShortcuts(keys);
    entry->setShortcutContext(Qt::WidgetShortcut);
    entry->setShortcutVisibleInContextMenu(true);
    view.setContextMenuPolicy(Qt::ActionsContextMenu);
}

/// Ctrl+C, and Ctrl+Shift+C.
inline void addCopyEntries(QWidget &view, const QString &text, const std::function<void()> &copy,
                           const QString &otherText, const std::function<void()> &copyOther) {
    addEntry(view, text, QKeySequence::keyBindings(QKeySequence::Copy), copy);
    addEntry(view, otherText, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C)}, copyOther);
}

inline void addExplainEntry(QWidget &view, const std::function<void()> &explain) {
    addEntry(view, QStringLiteral("Explain"), {QKeySequence(Qt::SHIFT | Qt::Key_F1)}, explain);
}

} // namespace veltrona
