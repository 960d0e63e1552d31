// The information box: name, version, holder of the rights and licence.
#pragma once

#include "ui/views/dialogs/forms.h"

class QLabel;
class QPushButton;

namespace veltrona {

class frmAbout : public desktop::DesignedDialog {
    Q_OBJECT

public:
    frmAbout();
    static frmAbout &instance() { return desktop::sharedForm<frmAbout>(); }

    /// Shows the box modally; returns when it has been unloaded.
    void Show();

private:
    void cmdOK_Click() { accept(); }
    void arrange() override;

    QLabel *lblName;
    QLabel *lblCP;
    QLabel *lblRights;
    QPushButton *cmdOK;
};

} // namespace veltrona
