#include "ui/report/frmPrev.h"

#include "core/base/failure.h"
#include "core/design/product.h"
#include "core/platform/dialogs/dialogs.h"
#include "ui/report/printing.h"
#include "ui/report/reportView.h"
#include "ui/views/busyCursor.h"
#include "ui/views/dialogs/forms.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {

constexpr TwipRect innerSize{0, 0, 10020, 8250};
// clang-format off
constexpr DesignedControl design[] = {
    {"cmdPrint", { 480, 120, 1815,  375}, "&Print"},
    {"cmdClose", {2640, 120, 1935,  375}, "&Close"},
    {"wbPP",     { 120, 600, 9735, 7335}},
};
// clang-format on
constexpr float widthReserve = 300;
constexpr float heightReserve = 1200;

/// Paper is light on a dark desktop too.
QPalette paperPalette() {
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    return palette;
}

void showMessage(const QString &text) {
    dialogs().message(MessageStyle::OkCancelExclamation, productName, text);
}

} // namespace

frmPrev::frmPrev()
    : DesignedDialog("frmPrev", design, innerSize),
      cmdPrint(desktop::makeControl<QPushButton>(design, "cmdPrint", this)),
      cmdClose(desktop::makeControl<QPushButton>(design, "cmdClose", this)),
      wbPP(desktop::makeControl<ReportView>(design, "wbPP", this)) {
    setWindowTitle(QStringLiteral("Print Preview"));
    wbPP->setAccessibleName(QStringLiteral("Report"));
    wbPP->setOpenLinks(false);
    // With a caret, a screen reader can read the page by the arrow keys.
    wbPP->setTextInteractionFlags(wbPP->textInteractionFlags() | Qt::TextSelectableByKeyboard);
    wbPP->setPalette(paperPalette());
    // As on paper, the width of the page does not depend on the window.
    wbPP->setLineWrapMode(QTextEdit::FixedPixelWidth);
    wbPP->setLineWrapColumnOrWidth(ReportSheet::pageWidth);
    cmdPrint->setAutoDefault(false);
    cmdClose->setAutoDefault(false);
    desktop::handle(cmdPrint, &QPushButton::clicked, this, &frmPrev::cmdPrint_Click);
    const std::pair<const char *, int> zoomKeys[] = {
        {"Ctrl++", 1}, {"Ctrl+=", 1}, {"Ctrl+-", -1}, {"Ctrl+0", 0}};
    for (const auto &[key, steps] : zoomKeys)
        connect(new QShortcut(QKeySequence(QLatin1String(key)), this), &QShortcut::activated, this,
                [this, steps = steps] { filtered([&] { zoomBy(steps); }); });
    wbPP->viewport()->installEventFilter(this);
    desktop::handle(cmdClose, &QPushButton::clicked, this, &frmPrev::cmdClose_Click);
}

frmPrev::~frmPrev() {
    Form_Unload();
}

frmPrev &frmPrev::instance() {
    return desktop::sharedForm<frmPrev>();
}

void frmPrev::Show() {
    arrange();
    fillScreen();
    Form_Load();
    cmdPrint->setFocus();
    exec();
    Form_Unload();
}

void frmPrev::arrange() {
    const TwipScale scale(font(), measuredLabels);
    desktop::placeControls(*this, design, scale);
    if (!isVisible())
        resize(scale.toPixels(innerSize).size());
    Form_Resize();
}

/// Window managers do not maximise windows of fixed size.
void frmPrev::fillScreen() {
    const QWidget *owner = desktop::owningWindow();
    m_screen = (owner ? owner : this)->screen()->availableGeometry();
    setFixedSize(m_screen.size() - desktop::frameExtent(*this));
    desktop::placeOverOwner(*this);
    move(m_screen.topLeft());
}

void frmPrev::Form_Load() {
    Navigate(FileName);
}

void frmPrev::Form_Resize() {
    if (isMinimized())
        return;
    const TwipScale scale(font(), measuredLabels);
    const QSize outer = size() + desktop::frameExtent(*this);
    wbPP->resize(outer - QSize(scale.toPixels(widthReserve), scale.toPixels(heightReserve)));
}

void frmPrev::Form_Unload() {
    wbPP->setDocument(nullptr);
    m_page = nullptr;
    report = {};
}

void frmPrev::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    Form_Resize();
}

/// The size of the frame is known only after the window manager has added it.
void frmPrev::moveEvent(QMoveEvent *event) {
    QDialog::moveEvent(event);
    const QSize inner = m_screen.size() - desktop::frameExtent(*this);
    if (isVisible() && size() != inner) {
        setFixedSize(inner);
        move(m_screen.topLeft());
    }
}

/// The zoom of QTextBrowser leaves tables, pictures and most texts as they are.
bool frmPrev::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::Wheel)
        return QDialog::eventFilter(watched, event);
    const auto &wheel = static_cast<const QWheelEvent &>(*event);
    if (!(wheel.modifiers() & Qt::ControlModifier))
        return false;
    constexpr int notch = 120;
    m_wheel += wheel.angleDelta().y();
    if (const int steps = m_wheel / notch; steps != 0) {
        m_wheel -= steps * notch;
        filtered([&] { zoomBy(steps); });
    }
    return true;
}

void frmPrev::zoomBy(int steps) {
    constexpr double step = 1.1, minZoom = 0.4, maxZoom = 4;
    if (!m_page)
        return;
    const double zoom =
        steps == 0 ? 1 : std::clamp(m_page->zoom() * std::pow(step, steps), minZoom, maxZoom);
    const QScrollBar &bar = *wbPP->verticalScrollBar();
    const double place = double(bar.value()) / std::max(1, bar.maximum());
    const BusyCursor busy;
    m_page->setZoom(zoom);
    wbPP->measureShown();
    wbPP->verticalScrollBar()->setValue(qRound(place * bar.maximum()));
}

/// Enter presses the focused button; there is no default button.
void frmPrev::keyPressEvent(QKeyEvent *event) {
    auto *button = qobject_cast<QPushButton *>(focusWidget());
    if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QDialog::keyPressEvent(event);
}

/// If the report can't be loaded, the browser shows the reason and nothing can be printed.
void frmPrev::Navigate(const QString &fileName) {
    const BusyCursor busy;
    try {
        m_page = std::make_unique<ReportDocument>(fileName, report, printing().paper());
        wbPP->setDocument(m_page.get());
        wbPP->measureShown();
        wbPP->verticalScrollBar()->setValue(0); // the caret is below the paper's margin
    } catch (const Failure &failure) {
        wbPP->setPlainText(failure.text());
    }
}

void frmPrev::cmdPrint_Click() {
    try {
        if (printing().isEnabled() && isLoaded())
            printing().print(*m_page, this);
        else
            showMessage(QStringLiteral("The Print command is currently disabled."));
    } catch (const Failure &failure) {
        showMessage(QStringLiteral("Print command Error: ") + failure.text());
    }
}

void frmPrev::cmdClose_Click() {
    accept();
}

} // namespace veltrona
