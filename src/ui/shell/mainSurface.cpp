#include "ui/shell/mainSurface.h"

#include "ui/views/accessible/announcement.h"
#include "ui/views/busyCursor.h"
#include "ui/views/controls/chartView.h"
#include "ui/views/controls/comboBoxView.h"
#include "ui/views/controls/datePickerView.h"
#include "ui/views/controls/elidedLabel.h"
#include "ui/views/controls/gridView.h"
#include "ui/views/controls/treeView.h"
#include "ui/views/dialogs/forms.h"
#include "ui/views/letterStyle.h"
#include "ui/views/plainText.h"

#include <QLineEdit>

#include <tuple>

namespace veltrona {

template<class View, class Control>
View *MainSurface::add(Control &control, QFrame *frame, const char *name) {
    auto *view = new View(control, frame);
    view->setObjectName(QLatin1String(name));
    return view;
}

QFrame *MainSurface::addFrame(const char *name) {
    auto *frame = new QFrame(this);
    frame->setObjectName(QLatin1String(name));
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    return frame;
}

QLabel *MainSurface::addLabel(QFrame *frame, const char *name, QWidget *buddy) {
    auto *label = desktop::makeControl<QLabel>(mainWindowDesign, name, frame);
    label->setBuddy(buddy);
    return label;
}

MainSurface::MainSurface(AnalysisControls &controls)
    : m_scale(font(), measuredLabels), Frame1(addFrame("Frame1")), Frame2(addFrame("Frame2")),
      Frame3(addFrame("Frame3")), m_tree(add<TreeView>(controls.treeList, Frame1, "treeList")),
      m_start(add<DatePickerView>(controls.dtpStart, Frame2, "dtpStart")),
      m_end(add<DatePickerView>(controls.dtpEnd, Frame2, "dtpEnd")),
      m_range(add<ComboBoxView>(controls.cboRange, Frame2, "cboRange")),
      m_grid(add<GridView>(controls.flxStat, Frame2, "flxStat")),
      m_chart(add<ChartView>(controls.mscMain, Frame3, "mscMain")),
      m_metric(add<ComboBoxView>(controls.cboLeft, Frame3, "cboLeft")),
      m_group(add<ComboBoxView>(controls.cboGroup, Frame3, "cboGroup")),
      lblStart(addLabel(Frame2, "lblStart", m_start)), lblEnd(addLabel(Frame2, "lblEnd", m_end)),
      lblRange(addLabel(Frame2, "lblRange", m_range)), lblSum(new ElidedLabel(Frame2)),
      lblLeft(addLabel(Frame3, "lblLeft", m_metric)),
      lblGroup(addLabel(Frame3, "lblGroup", m_group)), picChart(new QLabel(Frame3)) {
    m_tree->setAccessibleName(QStringLiteral("Account"));
    m_grid->setAccessibleName(QStringLiteral("Statistics"));
    lblSum->setObjectName(QStringLiteral("lblSum"));
    lblSum->setFullText(QLatin1String(designedIn(mainWindowDesign, "lblSum").caption));
    // Holds the picture on its way to the file; never shown.
    picChart->setObjectName(QStringLiteral("picChart"));
    picChart->hide();

    // The tab order: the tree, the period, the figures, the chart.
    QWidget *const order[] = {m_tree, m_start, m_end, m_range, m_grid, m_chart, m_metric, m_group};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
    // The fields would take the names of dropped files as text.
    for (QLineEdit *field : findChildren<QLineEdit *>())
        field->setAcceptDrops(false);
}

AnalysisScreen MainSurface::screen() {
    return {
        .textWidth =
            [this](const QString &text) {
                const double pixels = QFontMetricsF(m_grid->font()).horizontalAdvance(text);
                return static_cast<float>(pixels / m_scale.pixelsPerTwip());
            },
        .setCaption = [this](const QString &caption) { lblSum->setFullText(caption); },
        .setRootDescription = [this](const QString &text) { m_tree->setRootDescription(text); },
        .announce =
            [this](const QString &sentence) { veltrona::announce(*this, spokenText(sentence)); },
        .busy = [] { return std::make_shared<BusyCursor>(); },
    };
}

void MainSurface::applyScale(const QFont &font) {
    m_scale = TwipScale(font, measuredLabels);
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_tree, m_start, m_end, m_range, m_metric, m_group})
        fitStyleToLetters(*control);
    makeRoomForFields();
    m_grid->setPixelsPerTwip(m_scale.pixelsPerTwip());
    for (QLabel *label : {lblStart, lblEnd, lblRange, lblLeft, lblGroup})
        desktop::placeControl(*label, designed(label->objectName().toStdString()), m_scale);
    picChart->setGeometry(m_scale.toPixels(designed("picChart")));
}

/// Some styles ask for wide fields, which must end before their neighbours.
void MainSurface::makeRoomForFields() {
    const WindowLayout least = arrangeWindow({});
    const std::tuple<QWidget *, TwipRect, float> fields[] = {
        {m_start, least.dtpStart, designed("lblEnd").left},
        {m_end, least.dtpEnd, designed("lblRange").left},
        {m_range, least.cboRange, least.Frame2.width},
        {m_metric, least.cboLeft, least.Frame3.width},
        {m_group, least.cboGroup, least.Frame3.width},
    };
    constexpr float gap = 75;
    for (const auto &[field, place, end] : fields)
        m_scale.makeRoom(field->sizeHint().width(), end - gap - place.left);
}

void MainSurface::arrange(const WindowLayout &layout, int toolBarHeight) {
    const std::pair<QWidget *, TwipRect> frames[] = {
        {Frame1, layout.Frame1}, {Frame2, layout.Frame2}, {Frame3, layout.Frame3}};
    for (const auto &[frame, rect] : frames)
        frame->setGeometry(m_scale.toPixels(rect).translated(0, -toolBarHeight));

    TwipRect caption = designed("lblSum");
    caption.width = layout.Frame2.width - 2 * caption.left;
    const std::pair<QWidget *, TwipRect> filling[] = {
        {m_tree, layout.treeList},
        {lblSum, caption},
        {m_grid, layout.flxStat},
        {m_chart, layout.mscMain},
    };
    for (const auto &[widget, rect] : filling)
        widget->setGeometry(m_scale.toPixels(rect));

    const std::pair<QWidget *, TwipRect> fitting[] = {
        {m_start, layout.dtpStart}, {m_end, layout.dtpEnd},     {m_range, layout.cboRange},
        {lblLeft, layout.lblLeft},  {m_metric, layout.cboLeft}, {lblGroup, layout.lblGroup},
        {m_group, layout.cboGroup},
    };
    for (const auto &[widget, rect] : fitting)
        desktop::placeControl(*widget, rect, m_scale);
}

void MainSurface::finishEdits() {
    m_start->finishEdit();
    m_end->finishEdit();
}

QImage MainSurface::copyChart() {
    const QImage image = m_chart->picture().convertToFormat(QImage::Format_BGR888);
    if (!image.isNull())
        picChart->setPixmap(QPixmap::fromImage(image));
    return image;
}

} // namespace veltrona
