#include "ui/shell/frmAbout.h"

#include "core/base/text.h"
#include "core/design/product.h"

#include <QLabel>
#include <QPushButton>

namespace veltrona {

namespace {
constexpr TwipRect innerSize{0, 0, 4680, 2850};

// clang-format off
constexpr DesignedControl design[] = {
    {"lblName",   {1335,  360, 2010, 300}},
    {"lblCP",     {1088, 1080, 2505, 195}},
    {"lblRights", {1613, 1560, 1455, 195}, "Released under the MIT Licence"},
    {"cmdOK",     {1733, 2160, 1215, 375}, "&OK"},
};
// clang-format on

constexpr double namePoints = 12;
} // namespace

frmAbout::frmAbout()
    : DesignedDialog("frmAbout", design, innerSize),
      lblName(desktop::makeControl<QLabel>(design, "lblName", this)),
      lblCP(desktop::makeControl<QLabel>(design, "lblCP", this)),
      lblRights(desktop::makeControl<QLabel>(design, "lblRights", this)),
      cmdOK(desktop::makeControl<QPushButton>(design, "cmdOK", this)) {
    setWindowTitle(u"About "_s + productName);
    lblName->setText(productName);
    lblCP->setText(u"Version %1, \u00A9 2026 %2 developers"_s.arg(programVersion(), productName));
    for (QLabel *label : {lblName, lblCP, lblRights})
        label->setAlignment(Qt::AlignCenter);
    cmdOK->setDefault(true);
    desktop::handle(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
}

void frmAbout::Show() {
    showModal(cmdOK);
}

void frmAbout::arrange() {
    // The name stands out from the other lines, also where those are larger than it was drawn for.
    QFont nameFont = font();
    nameFont.setBold(true);
    nameFont.setPointSizeF(qMax(namePoints, font().pointSizeF() + 2));
    lblName->setFont(nameFont);
    DesignedDialog::arrange();
}

} // namespace veltrona
