// The view of a drop-down list, which must outlive it. Sets the combo's onChange. Reports each
// choice of the user, also of the entry that was chosen before.
#pragma once

#include "core/controls/comboBox.h"

#include <QComboBox>
#include <QScopedValueRollback>

#include <functional>

namespace veltrona {

class ComboBoxView : public QComboBox {
    Q_OBJECT
public:
    explicit ComboBoxView(ComboBox &combo, QWidget *parent = nullptr);

protected:
    void wheelEvent(QWheelEvent *event) override;

private:
    ComboBox &m_combo;
    QScopedValueRollback<std::function<void()>> m_onChange; // the combo's
};

} // namespace veltrona
