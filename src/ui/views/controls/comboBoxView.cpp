#include "ui/views/controls/comboBoxView.h"

#include "ui/views/accessible/viewAccessibles.h"

#include <QAbstractItemView>
#include <QWheelEvent>

namespace veltrona {

ComboBoxView::ComboBoxView(ComboBox &combo, QWidget *parent)
    : QComboBox(parent), m_combo(combo),
      m_onChange(combo.onChange, [this] { setCurrentIndex(m_combo.ListIndex()); }) {
    installComboBoxAccessible();
    setFocusPolicy(Qt::StrongFocus);
    addItems(combo.items());
    setCurrentIndex(combo.ListIndex());
    connect(this, &QComboBox::activated, this, [this](int index) {
        m_combo.setListIndex(index);
        if (hasFocus() && !view()->isVisible())
            notifyChoice(*this);
    });
}

// Without the focus the wheel scrolls past the control.
void ComboBoxView::wheelEvent(QWheelEvent *event) {
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

} // namespace veltrona
