// Plain text: item texts and tooltips that never take a name for markup.
#pragma once

#include <QString>
#include <QStyledItemDelegate>

class QAbstractItemView;
class QHelpEvent;

namespace veltrona {

/// A text for QToolTip, escaped since QToolTip guesses markup. Long lines wrap; line breaks stay.
QString plainToolTip(const QString &text);

/// Shows the full text of the item under the mouse if the view elides it, and the tooltip of its
/// model. `taken` is the part of the item's width that isn't for text.
void showToolTip(QAbstractItemView &view, const QHelpEvent &event, int taken);

/// A text on one line, shortened to some thousand characters.
QString shownLine(const QString &text);

/// Shows an item's text on one line.
class PlainTextDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QString displayText(const QVariant &value, const QLocale &locale) const override;
};

} // namespace veltrona
