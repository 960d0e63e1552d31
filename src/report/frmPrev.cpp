#include "report/frmPrev.h"

#include "platform/desktop/forms.h"
#include "platform/desktop/hourglass.h"
#include "platform/dialogs/dialogs.h"
#include "platform/dialogs/errorFilter.h"
#include "platform/failure.h"
#include "report/printing.h"

#include <QAbstractTextDocumentLayout>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QThreadPool>

#include <atomic>

namespace veltrona {

namespace {

constexpr TwipRect innerSize{0, 0, 10020, 8250};
constexpr TwipRect printPlace{480, 120, 1815, 375};
constexpr TwipRect closePlace{2640, 120, 1935, 375};
constexpr TwipRect browserPlace{120, 600, 9735, 7335};
constexpr float widthReserve = 300;
constexpr float heightReserve = 1200;

// Some 2,000 rows of statistics; up to here a page comes up at once.
constexpr qint64 longReport = 1'600'000;

QPalette paperPalette() {
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Link, QColor(0, 0, 238));
    return palette;
}

std::unique_ptr<ReportDocument> laidOutPage(const QString &fileName) {
    auto page = std::make_unique<ReportDocument>();
    page->load(fileName);
    page->setTextWidth(ReportDocument::pageWidth);
    page->size(); // lays it out
    return page;
}

} // namespace

/// What a thread that lays a page out shares with the preview, which may be closed before it ends.
struct frmPrev::Loading {
    std::atomic<bool> dropped = false;
    std::unique_ptr<ReportDocument> page;
    QString failure;
};

frmPrev::frmPrev()
    : cmdPrint(new QPushButton(QStringLiteral("&Print"), this)),
      cmdClose(new QPushButton(QStringLiteral("&Close"), this)), wbPP(new QTextBrowser(this)),
      m_notice(new QLabel(wbPP)) {
    setObjectName(QStringLiteral("frmPrev"));
    setWindowTitle(QStringLiteral("Print Preview"));
    setWindowFlags(desktop::fixedDialog);
    cmdPrint->setObjectName(QStringLiteral("cmdPrint"));
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    wbPP->setObjectName(QStringLiteral("wbPP"));
    wbPP->setAccessibleName(QStringLiteral("Report"));
    wbPP->setOpenLinks(false);
    wbPP->setPalette(paperPalette());
    // The page keeps its width, as on paper, however wide the window is.
    wbPP->setLineWrapMode(QTextEdit::FixedPixelWidth);
    wbPP->setLineWrapColumnOrWidth(ReportDocument::pageWidth);
    m_notice->setTextFormat(Qt::PlainText);
    m_notice->setAlignment(Qt::AlignCenter);
    m_notice->setWordWrap(true);
    m_notice->setPalette(paperPalette());
    cmdPrint->setAutoDefault(false);
    cmdClose->setAutoDefault(false);
    connect(cmdPrint, &QPushButton::clicked, this, [this] { filtered([&] { cmdPrint_Click(); }); });
    connect(cmdClose, &QPushButton::clicked, this, &frmPrev::cmdClose_Click);
}

frmPrev::~frmPrev() {
    if (m_loading)
        m_loading->dropped = true;
}

frmPrev &frmPrev::instance() {
    return desktop::sharedForm<frmPrev>();
}

void frmPrev::Show() {
    arrange();
    fillScreen();
    Form_Load();
    exec();
    if (m_loading)
        m_loading->dropped = true;
    m_loading = nullptr;
    showNotice(QString());
}

void frmPrev::arrange() {
    const TwipScale scale(font());
    desktop::placeControl(*cmdPrint, printPlace, scale);
    desktop::placeControl(*cmdClose, closePlace, scale);
    wbPP->setGeometry(scale.toPixels(browserPlace));
    resize(scale.toPixels(innerSize).size());
}

/// A window of a fixed size is never maximised by a window manager, so it takes that size itself.
void frmPrev::fillScreen() {
    const QWidget *owner = desktop::owningWindow();
    const QRect available = (owner ? owner : this)->screen()->availableGeometry();
    setFixedSize(available.size() - desktop::frameExtent(*this));
    desktop::placeOverOwner(*this);
    move(available.topLeft());
}

void frmPrev::Form_Load() {
    Navigate(FileName);
}

void frmPrev::Form_Resize() {
    if (isMinimized())
        return;
    const TwipScale scale(font());
    const QSize outer = size() + desktop::frameExtent(*this);
    wbPP->resize(outer - QSize(scale.toPixels(widthReserve), scale.toPixels(heightReserve)));
    m_notice->setGeometry(wbPP->rect());
}

void frmPrev::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    Form_Resize();
}

/// A page that can't be loaded leaves its reason in the browser's place, and nothing to print.
void frmPrev::Navigate(const QString &fileName) {
    if (QFileInfo(fileName).size() > longReport) {
        loadInBackground(fileName);
        return;
    }
    const Hourglass hourglass;
    try {
        showPage(laidOutPage(fileName));
    } catch (const Failure &failure) {
        showNotice(failure.text());
    }
}

void frmPrev::loadInBackground(const QString &fileName) {
    showNotice(QStringLiteral("The report is long. Its page is being laid out..."));
    m_loading = std::make_shared<Loading>();
    QThreadPool::globalInstance()->start([loading = m_loading, fileName, this] {
        try {
            if (!loading->dropped)
                loading->page = laidOutPage(fileName);
        } catch (const Failure &failure) {
            loading->failure = failure.text();
        }
        if (loading->page)
            loading->page->moveToThread(qApp->thread());
        QMetaObject::invokeMethod(qApp, [loading, this] {
            if (loading->dropped)
                return;
            if (loading->page)
                showPage(std::move(loading->page));
            else
                showNotice(loading->failure);
        });
    });
}

void frmPrev::showPage(std::unique_ptr<ReportDocument> page) {
    wbPP->setDocument(page.get());
    m_page = std::move(page); // the page before goes when no view shows it any more
    m_notice->hide();
}

void frmPrev::showNotice(const QString &text) {
    wbPP->setDocument(nullptr);
    m_page = nullptr;
    m_notice->setText(text);
    m_notice->show();
}

void frmPrev::cmdPrint_Click() {
    QString failure;
    try {
        if (m_page && printing().isEnabled())
            printing().print(*m_page, this);
        else
            dialogs().message(MessageStyle::OkCancelExclamation, QStringLiteral("Veltrona"),
                              QStringLiteral("The Print command is currently disabled."));
    } catch (const Failure &noted) {
        failure = noted.text();
    }
    if (!failure.isEmpty())
        dialogs().message(MessageStyle::OkCancelExclamation, QStringLiteral("Veltrona"),
                          QStringLiteral("Print command Error: ") + failure);
}

void frmPrev::cmdClose_Click() {
    accept();
}

} // namespace veltrona
