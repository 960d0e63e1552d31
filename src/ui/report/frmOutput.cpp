#include "ui/report/frmOutput.h"

#include "core/base/text.h"
#include "core/controls/commonDialog.h"
#include "core/design/product.h"
#include "core/platform/desktop/browser.h"
#include "core/platform/dialogs/dialogs.h"
#include "ui/report/frmPrev.h"
#include "ui/views/busyCursor.h"
#include "ui/views/controls/formCheckBox.h"
#include "ui/views/dialogs/forms.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace veltrona {

namespace {

constexpr TwipRect innerSize{0, 0, 7410, 2865};
constexpr float printRoleRise = 510;
constexpr char runExportCaption[] = "&Run Export";

// clang-format off
constexpr DesignedControl fileControls[] = { // hidden in the print role
    {"lblFilename", { 240, 450,  675, 195}, "Export to:"},
    {"txtFilename", {1320, 390, 4695, 315}},
    {"comBrowse",   {6120, 360, 1095, 375}, "&Browse"},
};
constexpr DesignedControl lowerControls[] = {
    {"chkOpts(0)", { 240,  960, 1695, 255}, "Insert Graph"},
    {"chkOpts(1)", { 240, 1440, 1695, 255}, "Insert Details"},
    {"chkOpts(2)", {3120,  960, 2295, 255}, "Insert Date and Time"},
    {"chkOpts(3)", {3120, 1440, 1695, 255}, "Insert Footer"},
    {"cmdRun",     {1294, 2160, 1575, 375}, runExportCaption},
    {"cmdClose",   {4541, 2160, 1575, 375}, "&Close"},
};
// clang-format on

} // namespace

frmOutput::frmOutput(ReportSource source, OutputSettings settings)
    : DesignedDialog("frmOutput", lowerControls, innerSize), m_source(std::move(source)),
      m_settings(std::move(settings)),
      lblFilename(desktop::makeControl<QLabel>(fileControls, "lblFilename", this)),
      txtFilename(desktop::makeControl<QLineEdit>(fileControls, "txtFilename", this)),
      comBrowse(desktop::makeControl<QPushButton>(fileControls, "comBrowse", this)),
      chkOpts{desktop::makeControl<FormCheckBox>(lowerControls, "chkOpts(0)", this),
              desktop::makeControl<FormCheckBox>(lowerControls, "chkOpts(1)", this),
              desktop::makeControl<FormCheckBox>(lowerControls, "chkOpts(2)", this),
              desktop::makeControl<FormCheckBox>(lowerControls, "chkOpts(3)", this)},
      cmdRun(desktop::makeControl<QPushButton>(lowerControls, "cmdRun", this)),
      cmdClose(desktop::makeControl<QPushButton>(lowerControls, "cmdClose", this)) {
    setWindowTitle(u"Export the Report"_s);
    lblFilename->setBuddy(txtFilename);
    txtFilename->setPlaceholderText(u"Type a file name or press Browse"_s);
    for (QCheckBox *option : chkOpts)
        option->setChecked(true);
    cmdRun->setDefault(true);
    desktop::handle(comBrowse, &QPushButton::clicked, this, &frmOutput::comBrowse_Click);
    desktop::handle(cmdRun, &QPushButton::clicked, this, &frmOutput::cmdRun_Click);
    desktop::handle(cmdClose, &QPushButton::clicked, this, &frmOutput::cmdClose_Click);
}

void frmOutput::setPrintRole() {
    setWindowTitle(u"Print the Report"_s);
    cmdRun->setText(u"&Print Preview"_s);
    for (QWidget *control : std::initializer_list<QWidget *>{lblFilename, txtFilename, comBrowse})
        control->hide();
    m_raised = printRoleRise;
}

void frmOutput::Show() {
    showModal();
}

void frmOutput::arrange() {
    const TwipScale scale(font(), measuredLabels);
    desktop::placeControls(*this, fileControls, scale);
    desktop::placeControls(*this, lowerControls, scale, m_raised);
    TwipRect inner = innerSize;
    inner.height -= m_raised;
    fixSize(scale.toPixels(inner).size());
}

void frmOutput::comBrowse_Click() {
    CommonDialog dlgNew{.Filter = u"HTML file (*.html)|*.html"_s,
                        .DialogTitle = u"Export the Report"_s,
                        .InitDir = m_settings.documentsFolder,
                        .Flags = CommonDialog::overwriteAndCreatePrompt,
                        .FinalName = reportFileName};
    dlgNew.ShowSave();
    if (!withoutBlanks(dlgNew.FileName).isEmpty())
        txtFilename->setText(reportFileName(dlgNew.FileName));
}

void frmOutput::cmdRun_Click() {
    if (cmdRun->text() == QLatin1String(runExportCaption))
        runExport();
    else
        runPrint();
}

void frmOutput::runExport() {
    if (withoutBlanks(txtFilename->text()).isEmpty())
        return;
    txtFilename->setText(reportFileName(txtFilename->text()));
    doExport(txtFilename->text(), m_settings.exportColor);
    const Answer answer =
        dialogs().message(MessageStyle::YesNoQuestion, productName,
                          u"Report created!\rDo you want to open the report in your browser?"_s);
    if (answer == Answer::Yes)
        showHtml(withoutBlanks(txtFilename->text()).toString());
    accept();
}

void frmOutput::runPrint() {
    frmPrev &preview = frmPrev::instance();
    preview.FileName = printReportPath(m_settings.dataFolder);
    preview.report = doExport(preview.FileName, m_settings.printColor);
    preview.Show();
    accept();
}

void frmOutput::cmdClose_Click() {
    reject();
}

Report frmOutput::doExport(const QString &strFilename, bool doColor) {
    const BusyCursor busy;
    m_source.options = {.graph = chkOpts[0]->isChecked(),
                        .details = chkOpts[1]->isChecked(),
                        .dateAndTime = chkOpts[2]->isChecked(),
                        .footer = chkOpts[3]->isChecked()};
    return writeReport(strFilename, doColor, m_source);
}

void frmOutput::showHtml(const QString &FileName) {
    QString program;
    if (desktop::findExecutable(FileName, program) <= 32) {
        dialogs().message(MessageStyle::OkExclamation, u"Browser Not Found"_s,
                          u"Could not find associated Browser"_s);
        return;
    }
    if (desktop::shellExecute(program, FileName) <= 32)
        dialogs().message(MessageStyle::OkExclamation, u"URL Failed"_s, u"Web Page not Opened"_s);
}

} // namespace veltrona
