// A check box of a dialog. Some desktops let Enter toggle a check box; in a dialog of ours Enter
// belongs to the default button wherever the focus is.
#pragma once

#include <QCheckBox>
#include <QKeyEvent>

namespace veltrona {

class FormCheckBox : public QCheckBox {
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            event->ignore();
        else
            QCheckBox::keyPressEvent(event);
    }
};

} // namespace veltrona
