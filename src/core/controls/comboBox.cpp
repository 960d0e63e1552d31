#include "core/controls/comboBox.h"

namespace veltrona {

void ComboBox::setListIndex(int index) {
    m_index = index;
    if (onChange)
        onChange();
    if (onClick)
        onClick();
}

} // namespace veltrona
