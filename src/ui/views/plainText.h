// Names as they are: item texts and tooltips that never take a name for markup.
#pragma once

#include <QString>
#include <QStyledItemDelegate>

class QAbstractItemView;
class QHelpEvent;

namespace veltrona {

/// A text for QToolTip, which takes anything that looks like markup for markup: escaped, and so
/// that long names wrap. Line breaks stay.
QString plainToolTip(const QString &text);

/// Shows the whole text of the item under the mouse if the view has no room for all of it, and the
/// tooltip that its model gives. `taken` is the width within the item's rectangle that isn't there
/// for text.
void showToolTip(QAbstractItemView &view, const QHelpEvent &event, int taken);

/// A text on one line, shortened where nobody could read it anyway.
QString shownLine(const QString &text);

/// Shows an item's text on one line.
class PlainTextDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QString displayText(const QVariant &value, const QLocale &locale) const override;
};

} // namespace veltrona
