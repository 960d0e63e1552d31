// What the program's windows have in common: one shared instance each, a place over their owner,
// and sizes that no text is cut by.
#pragma once

#include "ui/views/twipScale.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

namespace veltrona::desktop {

/// The shared instance of a window, made on first use; it goes shortly before the application does.
template<class Form>
Form &sharedForm() {
    static QPointer<Form> form;
    if (!form) {
        form = new Form;
        qAddPostRoutine([] { delete form.data(); });
    }
    return *form;
}

/// A dialog with a title bar and a close button and no other, that can't be resized.
inline constexpr Qt::WindowFlags fixedDialog = Qt::Dialog | Qt::CustomizeWindowHint |
                                               Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                               Qt::WindowCloseButtonHint;

/// The window that a dialog opening now belongs to; null if there is none.
QWidget *owningWindow();

/// Makes `form` belong to `owner` without becoming its child, and centres it there, on the screen.
void placeOverOwner(QWidget &form, QWidget *owner = owningWindow());

/// What the frame takes of a window's outer size. Where the window system names no frame (none is
/// drawn, or none is known yet), a fair stand-in.
QSize frameExtent(const QWidget &window);

/// Whether a change event asks for the window to be arranged anew.
bool changesSizes(const QEvent &event);

/// Puts a control at its designed place, grown about its centre where style, text or font ask for
/// more.
void placeControl(QWidget &control, const TwipRect &place, const TwipScale &scale);

} // namespace veltrona::desktop
