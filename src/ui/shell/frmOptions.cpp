#include "ui/shell/frmOptions.h"

#include "core/base/text.h"
#include "core/shell/modMain.h"
#include "core/shell/settings.h"
#include "ui/views/controls/formCheckBox.h"

#include <QCheckBox>
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

struct ColorSwitch {
    const char *checkBox;
    QLatin1String setting;
    bool *flag;
    bool withGrid; // ticked together with the first
};
/// The colours of the grid come first; without them the others can't be changed.
constexpr ColorSwitch switches[] = {
    {"chkCG", "grdcolor"_L1, &modMain::GridColor, true},
    {"chkCE", "expcolor"_L1, &modMain::ExportColor, true},
    {"chkCP", "prncolor"_L1, &modMain::PrintColor, false},
};

std::vector<QCheckBox *> makeBoxes(QWidget &form) {
    std::vector<QCheckBox *> boxes;
    for (const ColorSwitch &color : switches)
        boxes.push_back(desktop::makeControl<FormCheckBox>(design, color.checkBox, &form));
    return boxes;
}

bool isOn(QLatin1String setting) {
    QString text;
    loadSetting(settingsKey, setting, text);
    return text == "1"_L1;
}
} // namespace

frmOptions::frmOptions()
    : DesignedDialog("frmOptions", design, innerSize), m_boxes(makeBoxes(*this)),
      cmdOK(desktop::makeControl<QPushButton>(design, "cmdOK", this)),
      comCancel(desktop::makeControl<QPushButton>(design, "comCancel", this)) {
    setWindowTitle(u"Edit Options"_s);
    cmdOK->setDefault(true);
    desktop::handle(m_boxes.front(), &QCheckBox::toggled, this, &frmOptions::chkCG_Click);
    desktop::handle(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
    desktop::handle(comCancel, &QPushButton::clicked, this, &frmOptions::comCancel_Click);
}

void frmOptions::load() {
    if (m_loaded)
        return;
    m_loaded = true;
    Form_Load();
}

void frmOptions::Show() {
    load();
    showModal(m_boxes.front());
}

void frmOptions::Form_Load() {
    QCheckBox *grid = m_boxes.front();
    {
        // Resets the boxes without running chkCG_Click.
        const QSignalBlocker quiet(grid);
        for (QCheckBox *box : m_boxes)
            box->setChecked(false);
    }
    for (std::size_t i = 0; i < m_boxes.size(); ++i) {
        *switches[i].flag = isOn(switches[i].setting);
        m_boxes[i]->setChecked(*switches[i].flag);
    }
    // Without grid colours the boxes are cleared but the flags stay as stored: reports are coloured
    // until OK is pressed.
    for (std::size_t i = 1; i < m_boxes.size(); ++i) {
        m_boxes[i]->setChecked(m_boxes[i]->isChecked() && grid->isChecked());
        m_boxes[i]->setEnabled(grid->isChecked());
    }
}

void frmOptions::chkCG_Click() {
    // Ticking turns the export colours on and the print colours off, whatever they were before.
    const bool on = m_boxes.front()->isChecked();
    for (std::size_t i = 1; i < m_boxes.size(); ++i) {
        m_boxes[i]->setChecked(on && switches[i].withGrid);
        m_boxes[i]->setEnabled(on);
    }
}

void frmOptions::cmdOK_Click() {
    for (std::size_t i = 0; i < m_boxes.size(); ++i) {
        const bool on = m_boxes[i]->isChecked();
        *switches[i].flag = on;
        saveSetting(settingsKey, switches[i].setting, on ? u"1"_s : u"0"_s, textValue);
    }
    unload();
}

void frmOptions::done(int result) {
    m_loaded = false;
    QDialog::done(result);
}

} // namespace veltrona
