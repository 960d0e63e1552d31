// A drop-down list on screen. Takes the combo's onChange; the combo must outlive the view. Each
// choice of the user is told, also the choice of the entry that was chosen before.
#pragma once

#include "core/controls/comboBox.h"

#include <QComboBox>

namespace veltrona {

class ComboBoxView : public QComboBox {
    Q_OBJECT
public:
    explicit ComboBoxView(ComboBox &combo, QWidget *parent = nullptr);
    ~ComboBoxView() override;

protected:
    void wheelEvent(QWheelEvent *event) override;

private:
    ComboBox &m_combo;
};

} // namespace veltrona
