#include "ui/views/accessible/screenReader.h"
#include "ui/views/accessible/viewAccessibles.h"
#include "ui/views/controls/comboBoxView.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>

namespace veltrona {

namespace {

/// Its value is a text that can be read, which makes a screen reader say it with the name.
class ComboBoxAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit ComboBoxAccessible(ComboBoxView &view)
        : QAccessibleWidget(&view, QAccessible::ComboBox), m_view(view) {}

    int childCount() const override { return 1; }
    QAccessibleInterface *child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(m_view.view()) : nullptr;
    }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *child) const override {
        return child->object() == m_view.view() ? 0 : -1;
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = m_view.view()->isVisible();
        return state;
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? m_view.currentText() : QAccessibleWidget::text(kind);
    }
    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override { return {showMenuAction()}; }
    void doAction(const QString &name) override {
        if (name != showMenuAction())
            return;
        if (m_view.view()->isVisible())
            m_view.hidePopup();
        else
            m_view.showPopup();
    }

    QString text(int start, int end) const override {
        return m_view.currentText().mid(start, end - start);
    }
    int characterCount() const override { return static_cast<int>(m_view.currentText().size()); }
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override {}
    int selectionCount() const override { return 0; }
    void selection(int, int *start, int *end) const override { *start = *end = 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    QRect characterRect(int) const override { return {}; }
    int offsetAtPoint(const QPoint &) const override { return -1; }
    void scrollToSubstring(int, int) override {}
    QString attributes(int, int *start, int *end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

private:
    ComboBoxView &m_view;
};

} // namespace

void installComboBoxAccessible() {
    installAccessible<ComboBoxView, ComboBoxAccessible>();
}

void notifyChoice(ComboBoxView &view) {
    if (QAccessibleInterface *list = accessibleOf(view.view()))
        notifyFocus(list->child(view.currentIndex()));
}

} // namespace veltrona
