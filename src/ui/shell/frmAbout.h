// The information box: name, version, holder of the rights and licence.
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace veltrona {

class frmAbout : public QDialog {
    Q_OBJECT

public:
    frmAbout();
    static frmAbout &instance();

    /// Shows the box modally; returns when it has been unloaded.
    void Show();

protected:
    void changeEvent(QEvent *event) override;

private:
    void cmdOK_Click();
    void arrange();

    QLabel *lblName;
    QLabel *lblCP;
    QLabel *lblRights;
    QPushButton *cmdOK;
};

} // namespace veltrona
