// What the program's windows have in common: controls created and placed as designed, large enough
// for their texts; handlers in the error filter; a place over their owner; for most, one shared
// instance.
#pragma once

#include "core/platform/dialogs/errorFilter.h"
#include "ui/views/twipScale.h"

#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>

#include <string_view>
#include <type_traits>

class QScrollArea;

namespace veltrona::desktop {

/// The shared instance of a window, created on first use and deleted shortly before the
/// application.
template<class Form>
Form &sharedForm() {
    static QPointer<Form> form;
    if (!form) {
        form = new Form;
        qAddPostRoutine([] { delete form.data(); });
    }
    return *form;
}

/// A dialog that can't be resized, with a close button as its only one.
inline constexpr Qt::WindowFlags fixedDialog = Qt::Dialog | Qt::CustomizeWindowHint |
                                               Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                               Qt::WindowCloseButtonHint;

/// The window that a dialog opening now belongs to; null if there is none.
QWidget *owningWindow();

/// Makes `form` belong to `owner` without becoming its child, and centres it there, on the screen.
void placeOverOwner(QWidget &form, QWidget *owner = owningWindow());

/// What the frame takes of a window's outer size; an estimate where the window system reports no
/// frame (none is drawn, or none is known yet).
QSize frameExtent(const QWidget &window);

/// A control of a design with its name and, if it can have one, its caption. A label shows plain
/// text.
template<class Control>
Control *makeControl(WindowDesign design, std::string_view name, QWidget *parent) {
    const DesignedControl &designed = designedIn(design, name);
    Control *control;
    if constexpr (std::is_constructible_v<Control, QString, QWidget *>)
        control = new Control(QString::fromLatin1(designed.caption), parent);
    else
        control = new Control(parent);
    if constexpr (std::is_base_of_v<QLabel, Control>)
        control->setTextFormat(Qt::PlainText);
    control->setObjectName(QLatin1String(designed.name));
    return control;
}

/// Has a signal run a handler of the form, in the error filter.
template<class Sender, class Signal, class Form>
void handle(Sender *sender, Signal signal, Form *form, void (Form::*handler)()) {
    QObject::connect(sender, signal, form,
                     [form, handler] { filtered([form, handler] { (form->*handler)(); }); });
}

/// A dialog of fixed size with the controls of a design, arranged anew when font or style change.
class DesignedDialog : public QDialog {
protected:
    /// The design must outlive the dialog. `name` is also the object's name.
    DesignedDialog(const char *name, WindowDesign design, const TwipRect &innerSize,
                   Qt::WindowFlags flags = fixedDialog);

    void changeEvent(QEvent *event) override;
    /// Puts the controls at their places and fixes the size.
    virtual void arrange();
    void fixSize(const QSize &designed);
    /// Shows the dialog modally over its owner with the focus in `first`; returns when it has
    /// closed.
    void showModal(QWidget *first = nullptr);

private:
    void makeScrollArea();

    WindowDesign m_design;
    TwipRect m_innerSize;
    QScrollArea *m_scroll = nullptr; // once the screen was too small for the controls
};

/// Puts a control at its designed place, wider to the right and higher about its centre where
/// style, text or font ask for more.
void placeControl(QWidget &control, const TwipRect &place, const TwipScale &scale);

/// Puts all controls of a design at their places, or higher by so many twips.
void placeControls(const QWidget &form, WindowDesign design, const TwipScale &scale,
                   float raisedBy = 0);

} // namespace veltrona::desktop
