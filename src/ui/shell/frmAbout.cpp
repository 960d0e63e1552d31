#include "ui/shell/frmAbout.h"

#include "core/base/product.h"
#include "core/shell/version.h"
#include "ui/views/forms.h"

#include <QLabel>
#include <QPushButton>

namespace veltrona {

namespace {
constexpr TwipRect innerSize{0, 0, 4680, 2850};

// clang-format off
struct { const char *name; TwipRect place; } constexpr design[] = {
    {"lblName",   {1335,  360, 2010, 300}},
    {"lblCP",     {1088, 1080, 2505, 195}},
    {"lblRights", {1613, 1560, 1455, 195}},
    {"cmdOK",     {1733, 2160, 1215, 375}},
};
// clang-format on

constexpr double namePoints = 12;
} // namespace

frmAbout::frmAbout()
    : lblName(new QLabel(productName, this)), lblCP(new QLabel(this)),
      lblRights(new QLabel(QStringLiteral("Released under the MIT Licence"), this)),
      cmdOK(new QPushButton(QStringLiteral("&OK"), this)) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About ") + productName);
    setWindowFlags(desktop::fixedDialog);
    lblCP->setText(
        QStringLiteral("Version %1, \u00A9 2026 %2 developers").arg(programVersion(), productName));
    QWidget *const controls[] = {lblName, lblCP, lblRights, cmdOK};
    for (size_t i = 0; i < std::size(controls); ++i)
        controls[i]->setObjectName(QLatin1String(design[i].name));
    for (QLabel *label : {lblName, lblCP, lblRights}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignCenter);
    }
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
}

frmAbout &frmAbout::instance() {
    return desktop::sharedForm<frmAbout>();
}

void frmAbout::Show() {
    arrange();
    desktop::placeOverOwner(*this);
    cmdOK->setFocus();
    exec();
}

void frmAbout::changeEvent(QEvent *event) {
    QDialog::changeEvent(event);
    if (desktop::changesSizes(*event))
        arrange();
}

void frmAbout::arrange() {
    // The name stands out from the other lines, also where those are larger than it was drawn for.
    QFont nameFont = font();
    nameFont.setBold(true);
    nameFont.setPointSizeF(qMax(namePoints, font().pointSizeF() + 2));
    lblName->setFont(nameFont);

    const TwipScale scale(font());
    for (const auto &control : design)
        desktop::placeControl(*findChild<QWidget *>(QLatin1String(control.name)), control.place,
                              scale);
    setFixedSize(scale.toPixels(innerSize).size());
}

void frmAbout::cmdOK_Click() {
    accept();
}

} // namespace veltrona
