#include "ui/views/forms.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QStyle>
#include <QWindow>

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
    const QSize known = window.frameGeometry().size() - window.size();
    if (!known.isNull()) // a maximised window may have a title alone
        return known;
    constexpr int border = 4;
    const int title = qMax(window.style()->pixelMetric(QStyle::PM_TitleBarHeight), 24);
    return {2 * border, title + border};
}

bool changesSizes(const QEvent &event) {
    return event.type() == QEvent::FontChange || event.type() == QEvent::StyleChange;
}

void placeControl(QWidget &control, const TwipRect &place, const TwipScale &scale) {
    QRect rect = scale.toPixels(place);
    const QPoint centre = rect.center();
    rect.setSize(rect.size().expandedTo(control.sizeHint()));
    rect.moveCenter(centre);
    control.setGeometry(rect);
}

void placeControls(const QWidget &form, WindowDesign design, const TwipScale &scale,
                   float raisedBy) {
    for (const DesignedControl &control : design) {
        TwipRect place = control.place;
        place.top -= raisedBy;
        placeControl(*form.findChild<QWidget *>(QLatin1String(control.name)), place, scale);
    }
}

} // namespace veltrona::desktop
