#include "ui/shell/frmOptions.h"

#include "core/shell/modMain.h"
#include "core/shell/settings.h"
#include "ui/views/controls/formCheckBox.h"
#include "ui/views/dialogs/forms.h"

#include <QPushButton>
#include <QSignalBlocker>

namespace veltrona {

namespace {
constexpr TwipRect innerSize{0, 0, 3720, 2505};

// clang-format off
constexpr DesignedControl design[] = {
    {"chkCG",     { 360,  240, 2655, 375}, "Enable color coding in grid"},
    {"chkCE",     { 360,  720, 2655, 375}, "Enable color coding in export"},
    {"chkCP",     { 360, 1200, 2655, 375}, "Enable color coding in print"},
    {"cmdOK",     { 428, 1800, 1215, 375}, "&OK"},
    {"comCancel", {2078, 1800, 1215, 375}, "&Cancel"},
};
// clang-format on

bool isOn(QLatin1String valueName) {
    QString text;
    loadSetting(settingsKey, valueName, text);
    return text == QLatin1String("1");
}

void store(QLatin1String valueName, const QCheckBox &box, bool &flag) {
    flag = box.isChecked();
    saveSetting(settingsKey, valueName, flag ? QStringLiteral("1") : QStringLiteral("0"),
                textValue);
}

constexpr QLatin1String gridColorValue("grdcolor");
constexpr QLatin1String exportColorValue("expcolor");
constexpr QLatin1String printColorValue("prncolor");
} // namespace

frmOptions::frmOptions()
    : chkCG(desktop::makeControl<FormCheckBox>(design, "chkCG", this)),
      chkCE(desktop::makeControl<FormCheckBox>(design, "chkCE", this)),
      chkCP(desktop::makeControl<FormCheckBox>(design, "chkCP", this)),
      cmdOK(desktop::makeControl<QPushButton>(design, "cmdOK", this)),
      comCancel(desktop::makeControl<QPushButton>(design, "comCancel", this)) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Edit Options"));
    setWindowFlags(desktop::fixedDialog);
    cmdOK->setDefault(true);
    desktop::handle(chkCG, &QCheckBox::toggled, this, &frmOptions::chkCG_Click);
    desktop::handle(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
    desktop::handle(comCancel, &QPushButton::clicked, this, &frmOptions::comCancel_Click);
}

frmOptions &frmOptions::instance() {
    return desktop::sharedForm<frmOptions>();
}

void frmOptions::load() {
    if (m_loaded)
        return;
    m_loaded = true;
    Form_Load();
}

void frmOptions::Show() {
    load();
    arrange();
    desktop::placeOverOwner(*this);
    chkCG->setFocus();
    exec();
}

void frmOptions::changeEvent(QEvent *event) {
    QDialog::changeEvent(event);
    if (desktop::changesSizes(*event))
        arrange();
}

void frmOptions::arrange() {
    const TwipScale scale(font(), measuredLabels);
    desktop::placeControls(*this, design, scale);
    setFixedSize(scale.toPixels(innerSize).size());
}

void frmOptions::Form_Load() {
    {
        // A form that is loaded afresh begins with clear boxes, which is no change of theirs.
        const QSignalBlocker quiet(chkCG);
        chkCG->setChecked(false);
        chkCE->setChecked(false);
        chkCP->setChecked(false);
    }
    modMain::GridColor = isOn(gridColorValue);
    chkCG->setChecked(modMain::GridColor);
    modMain::ExportColor = isOn(exportColorValue);
    chkCE->setChecked(modMain::ExportColor);
    modMain::PrintColor = isOn(printColorValue);
    chkCP->setChecked(modMain::PrintColor);
    // Without grid colours the boxes are cleared but the flags stay as stored: reports come out
    // coloured until OK is pressed.
    if (!chkCG->isChecked()) {
        chkCE->setChecked(false);
        chkCP->setChecked(false);
    }
    chkCE->setEnabled(chkCG->isChecked());
    chkCP->setEnabled(chkCG->isChecked());
}

void frmOptions::chkCG_Click() {
    // Ticking turns the export colours on and the print colours off, whatever they were before.
    const bool on = chkCG->isChecked();
    chkCE->setChecked(on);
    chkCP->setChecked(false);
    chkCE->setEnabled(on);
    chkCP->setEnabled(on);
}

void frmOptions::cmdOK_Click() {
    store(gridColorValue, *chkCG, modMain::GridColor);
    store(exportColorValue, *chkCE, modMain::ExportColor);
    store(printColorValue, *chkCP, modMain::PrintColor);
    unload();
}

void frmOptions::comCancel_Click() {
    unload();
}

void frmOptions::done(int result) {
    m_loaded = false;
    QDialog::done(result);
}

} // namespace veltrona
