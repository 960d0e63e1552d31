// A check box that leaves Enter to the dialog's default button; some desktops let it toggle.
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
