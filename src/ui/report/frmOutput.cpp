#include "ui/report/frmOutput.h"

#include "core/base/blanks.h"
#include "core/base/product.h"
#include "core/controls/commonDialog.h"
#include "core/platform/desktop/browser.h"
#include "core/platform/dialogs/dialogs.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/report/reportNames.h"
#include "ui/report/frmPrev.h"
#include "ui/views/formCheckBox.h"
#include "ui/views/forms.h"
#include "ui/views/hourglass.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace veltrona {

namespace {

constexpr TwipRect innerSize{0, 0, 7410, 2865};
constexpr float printRoleRise = 510;
constexpr int overwriteAndCreatePrompt = 8198;

struct DesignedControl {
    const char *name;
    const char *caption;
    TwipRect place;
};

// clang-format off
constexpr DesignedControl filenameLabel{"lblFilename", "Export to:", {240, 450, 675, 195}};
constexpr DesignedControl filenameBox  {"txtFilename", "", {1320, 390, 4695, 315}};
constexpr DesignedControl browseButton {"comBrowse", "&Browse", {6120, 360, 1095, 375}};
constexpr DesignedControl optionBoxes[] = {
    {"chkOpts(0)", "Insert Graph",         { 240,  960, 1695, 255}},
    {"chkOpts(1)", "Insert Details",       { 240, 1440, 1695, 255}},
    {"chkOpts(2)", "Insert Date and Time", {3120,  960, 2295, 255}},
    {"chkOpts(3)", "Insert Footer",        {3120, 1440, 1695, 255}},
};
constexpr DesignedControl runButton  {"cmdRun",   "&Run Export", {1294, 2160, 1575, 375}};
constexpr DesignedControl closeButton{"cmdClose", "&Close",      {4541, 2160, 1575, 375}};
// clang-format on

const QString runExportCaption = QString::fromLatin1(runButton.caption);

template<class Control>
Control *make(const DesignedControl &design, QWidget *parent) {
    auto *control = new Control(QString::fromLatin1(design.caption), parent);
    control->setObjectName(QLatin1String(design.name));
    return control;
}

TwipRect raised(TwipRect place, float by) {
    place.top -= by;
    return place;
}

} // namespace

frmOutput::frmOutput(ReportSource source, OutputSettings settings)
    : m_source(std::move(source)), m_settings(std::move(settings)),
      lblFilename(make<QLabel>(filenameLabel, this)),
      txtFilename(make<QLineEdit>(filenameBox, this)),
      comBrowse(make<QPushButton>(browseButton, this)),
      chkOpts{make<FormCheckBox>(optionBoxes[0], this), make<FormCheckBox>(optionBoxes[1], this),
              make<FormCheckBox>(optionBoxes[2], this), make<FormCheckBox>(optionBoxes[3], this)},
      cmdRun(make<QPushButton>(runButton, this)), cmdClose(make<QPushButton>(closeButton, this)) {
    setObjectName(QStringLiteral("frmOutput"));
    setWindowTitle(QStringLiteral("Export the Report"));
    setWindowFlags(desktop::fixedDialog);
    lblFilename->setTextFormat(Qt::PlainText);
    lblFilename->setBuddy(txtFilename);
    for (QCheckBox *option : chkOpts)
        option->setChecked(true);
    cmdRun->setDefault(true);
    const auto onClick = [this](QPushButton *button, void (frmOutput::*handler)()) {
        connect(button, &QPushButton::clicked, this,
                [this, handler] { filtered([&] { (this->*handler)(); }); });
    };
    onClick(comBrowse, &frmOutput::comBrowse_Click);
    onClick(cmdRun, &frmOutput::cmdRun_Click);
    onClick(cmdClose, &frmOutput::cmdClose_Click);
}

void frmOutput::setPrintRole() {
    setWindowTitle(QStringLiteral("Print the Report"));
    cmdRun->setText(QStringLiteral("&Print Preview"));
    for (QWidget *control :
         {static_cast<QWidget *>(lblFilename), static_cast<QWidget *>(txtFilename),
          static_cast<QWidget *>(comBrowse)})
        control->hide();
    m_raised = printRoleRise;
}

void frmOutput::Show() {
    arrange();
    desktop::placeOverOwner(*this);
    exec();
}

void frmOutput::changeEvent(QEvent *event) {
    QDialog::changeEvent(event);
    if (desktop::changesSizes(*event))
        arrange();
}

void frmOutput::arrange() {
    const TwipScale scale(font());
    desktop::placeControl(*lblFilename, filenameLabel.place, scale);
    desktop::placeControl(*txtFilename, filenameBox.place, scale);
    desktop::placeControl(*comBrowse, browseButton.place, scale);
    for (std::size_t i = 0; i < chkOpts.size(); ++i)
        desktop::placeControl(*chkOpts[i], raised(optionBoxes[i].place, m_raised), scale);
    desktop::placeControl(*cmdRun, raised(runButton.place, m_raised), scale);
    desktop::placeControl(*cmdClose, raised(closeButton.place, m_raised), scale);
    TwipRect inner = innerSize;
    inner.height -= m_raised;
    setFixedSize(scale.toPixels(inner).size());
}

void frmOutput::comBrowse_Click() {
    CommonDialog dlgNew;
    dlgNew.DialogTitle = QStringLiteral("Export the Report");
    dlgNew.Filter = QStringLiteral("HTML file (*.html)|*.html");
    dlgNew.InitDir = m_settings.documentsFolder;
    dlgNew.Flags = overwriteAndCreatePrompt;
    dlgNew.FinalName = reportFileName;
    dlgNew.ShowSave();
    if (!withoutBlanks(dlgNew.FileName).isEmpty())
        txtFilename->setText(reportFileName(dlgNew.FileName));
}

void frmOutput::cmdRun_Click() {
    if (cmdRun->text() == runExportCaption)
        runExport();
    else
        runPrint();
}

void frmOutput::runExport() {
    if (withoutBlanks(txtFilename->text()).isEmpty())
        return;
    txtFilename->setText(reportFileName(txtFilename->text()));
    doExport(txtFilename->text(), m_settings.exportColor);
    const Answer answer = dialogs().message(
        MessageStyle::YesNoQuestion, productName,
        QStringLiteral("Report created!\rDo you want to open the report in your browser?"));
    if (answer == Answer::Yes)
        showHtml(withoutBlanks(txtFilename->text()).toString());
    accept();
}

void frmOutput::runPrint() {
    frmPrev &preview = frmPrev::instance();
    preview.FileName = printReportPath(m_settings.dataFolder);
    doExport(preview.FileName, m_settings.printColor);
    preview.Show();
    accept();
}

void frmOutput::cmdClose_Click() {
    reject();
}

void frmOutput::doExport(const QString &strFilename, bool doColor) {
    const Hourglass hourglass;
    m_source.options = {chkOpts[0]->isChecked(), chkOpts[1]->isChecked(), chkOpts[2]->isChecked(),
                        chkOpts[3]->isChecked()};
    writeReport(strFilename, doColor, m_source);
}

void frmOutput::showHtml(const QString &FileName) {
    QString program;
    if (desktop::findExecutable(FileName, program) <= 32) {
        dialogs().message(MessageStyle::OkExclamation, QStringLiteral("Browser Not Found"),
                          QStringLiteral("Could not find associated Browser"));
        return;
    }
    if (desktop::shellExecute(program, FileName) <= 32)
        dialogs().message(MessageStyle::OkExclamation, QStringLiteral("URL Failed"),
                          QStringLiteral("Web Page not Opened"));
}

} // namespace veltrona
