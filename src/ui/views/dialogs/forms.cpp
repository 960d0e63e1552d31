#include "ui/views/dialogs/forms.h"

#include "ui/views/letterStyle.h"

#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QWindow>

#include <cmath>

namespace veltrona::desktop {

QWidget *owningWindow() {
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget *active = QApplication::activeWindow())
        return active;
    // Without a window manager no window is active.
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window)
            return window;
    }
    return nullptr;
}

namespace {
void centre(QWidget &form, const QRect &over, const QRect &screen) {
    const bool framed = !form.windowFlags().testFlag(Qt::FramelessWindowHint);
    QRect place({}, form.size() + (framed ? frameExtent(form) : QSize(0, 0)));
    place.moveCenter(over.center());
    place.moveRight(qMin(place.right(), screen.right()));
    place.moveBottom(qMin(place.bottom(), screen.bottom()));
    place.moveLeft(qMax(place.left(), screen.left()));
    place.moveTop(qMax(place.top(), screen.top()));
    form.move(place.topLeft());
}
} // namespace

void placeOverOwner(QWidget &form, QWidget *owner) {
    form.winId(); // makes the window that the owner is set on
    if (owner == &form)
        owner = nullptr;
    form.windowHandle()->setTransientParent(owner ? owner->window()->windowHandle() : nullptr);

    const QRect screen = (owner ? owner : &form)->screen()->availableGeometry();
    const QRect over = owner ? owner->window()->frameGeometry() : screen;
    const QSize sizeBefore = form.size();
    centre(form, over, screen);
    // A font that has changed since the last show may come with the first move.
    if (form.size() != sizeBefore)
        centre(form, over, screen);
}

QSize frameExtent(const QWidget &window) {
    constexpr int border = 4;
    constexpr int lowestTitle = 24;
    const QRect inner = window.geometry();
    const QRect outer = window.frameGeometry();
    if (inner == outer) {
        const int title = qMax(window.style()->pixelMetric(QStyle::PM_TitleBarHeight), lowestTitle);
        return {2 * border, title + border};
    }
    const int top = inner.top() - outer.top(); // a maximised window may have a title alone
    const double ratio = window.devicePixelRatioF();
    if (top >= lowestTitle || ratio == 1)
        return outer.size() - inner.size();
    // A title so low is drawn without regard to the screen's scale, which the layout must not
    // depend on. Qt has rounded halves up.
    const auto unscaled = [ratio](int edge) {
        return edge > 0 ? static_cast<int>(std::ceil((edge - 0.5) * ratio)) : 0;
    };
    return {unscaled(inner.left() - outer.left()) + unscaled(outer.right() - inner.right()),
            unscaled(top) + unscaled(outer.bottom() - inner.bottom())};
}

DesignedDialog::DesignedDialog(const char *name, WindowDesign design, const TwipRect &innerSize,
                               Qt::WindowFlags flags)
    : m_design(design), m_innerSize(innerSize) {
    setObjectName(QLatin1String(name));
    setWindowFlags(flags);
}

void DesignedDialog::changeEvent(QEvent *event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        arrange();
}

void DesignedDialog::arrange() {
    const TwipScale scale(font(), measuredLabels);
    placeControls(*this, m_design, scale);
    fixSize(scale.toPixels(m_innerSize).size());
}

/// On a screen that doesn't hold the dialog, it is cut to the screen and its controls scroll.
void DesignedDialog::fixSize(const QSize &designed) {
    const QWidget *owner = owningWindow();
    const QSize room = (owner ? owner : this)->screen()->availableSize() - frameExtent(*this);
    if (!m_scroll && designed.boundedTo(room) != designed)
        makeScrollArea();
    if (!m_scroll)
        return setFixedSize(designed);
    const int bar = m_scroll->verticalScrollBar()->sizeHint().width();
    const QSize bars(designed.height() > room.height() ? bar : 0,
                     designed.width() > room.width() ? bar : 0);
    setFixedSize((designed + bars).boundedTo(room));
    m_scroll->widget()->resize(designed);
    m_scroll->resize(size());
}

void DesignedDialog::makeScrollArea() {
    const auto controls = findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    // Within one window the order of the Tab key stays.
    m_scroll->setWidget(new QWidget);
    for (QWidget *control : controls) {
        const bool isHidden = control->isHidden();
        control->setParent(m_scroll->widget());
        control->setVisible(!isHidden);
    }
    m_scroll->show();
}

void DesignedDialog::showModal(QWidget *first) {
    arrange();
    placeOverOwner(*this);
    if (first)
        first->setFocus();
    exec();
}

void placeControl(QWidget &control, const TwipRect &place, const TwipScale &scale) {
    const QRect designed = scale.toPixels(place);
    QRect rect = designed;
    rect.setSize(rect.size().expandedTo(control.sizeHint()));
    rect.moveCenter(designed.center());
    const auto *label = qobject_cast<QLabel *>(&control);
    if (!label || !label->alignment().testFlag(Qt::AlignHCenter))
        rect.moveLeft(designed.left());
    control.setGeometry(rect);
}

void placeControls(const QWidget &form, WindowDesign design, const TwipScale &scale,
                   float raisedBy) {
    for (const DesignedControl &control : design) {
        TwipRect place = control.place;
        place.top -= raisedBy;
        auto *widget = form.findChild<QWidget *>(QLatin1String(control.name));
        if (qobject_cast<QCheckBox *>(widget))
            fitStyleToLetters(*widget);
        placeControl(*widget, place, scale);
    }
}

} // namespace veltrona::desktop
