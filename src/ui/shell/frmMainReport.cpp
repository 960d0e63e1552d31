// frmMain: the road to a report.
#include "core/analysis/tree/navigationTexts.h"
#include "core/shell/modMain.h"
#include "ui/report/frmOutput.h"
#include "ui/shell/frmMain.h"
#include "ui/views/controls/chartView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>

namespace veltrona {

/// The chart goes to the clipboard and into `picChart`, as it was always taken from there; without
/// a clipboard the report loses nothing.
const drawing::Picture *frmMain::copyChart() {
    const QImage image = m_chartView->picture().convertToFormat(QImage::Format_BGR888);
    if (image.isNull())
        return nullptr;
    QGuiApplication::clipboard()->setImage(image);
    picChart->setPixmap(QPixmap::fromImage(image));
    m_picture = drawing::Picture(drawing::createBitmap(image.width(), image.height(),
                                                       image.constBits(), image.bytesPerLine()));
    return &m_picture;
}

static OutputSettings outputSettings() {
    return {.documentsFolder = modMain::getSpecialFolder(modMain::documentsFolder),
            .dataFolder = modMain::DataFolder,
            .exportColor = modMain::ExportColor,
            .printColor = modMain::PrintColor};
}

/// A report takes node and dates from the controls and the figures from the view, which a failed
/// refresh has parted: then it is made up for first, or there is no report.
ReportSource frmMain::reportSource() {
    if (m_viewBehind)
        treeList_NodeClick(treeList.SelectedItem());
    ReportSource source;
    if (const TreeNode *node = treeList.SelectedItem())
        source.selected = pathOf(*node);
    source.range = dateRange();
    source.grid = &flxStat;
    source.metric = cboLeft.Text();
    source.copyChart = [this] { return copyChart(); };
    return source;
}

// A window manager may lose the focus where a dialog closes together with the one above it, so the
// main window asks for the keys.
void frmMain::expRep() {
    frmOutput(reportSource(), outputSettings()).Show();
    activateWindow();
}

void frmMain::prnRep() {
    frmOutput output(reportSource(), outputSettings());
    output.setPrintRole();
    output.Show();
    activateWindow();
}

} // namespace veltrona
