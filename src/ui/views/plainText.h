// Plain text: item texts and tooltips that never take a name for markup.
#pragma once

#include <QString>
#include <QStyledItemDelegate>

class QAbstractItemView;
class QHelpEvent;
class QRect;

namespace veltrona {

/// A text for QToolTip, escaped since QToolTip guesses markup. Long lines wrap; line breaks stay.
QString plainToolTip(const QString &text);

/// Shows the full text of the item under the mouse if the view elides it, and the tooltip of its
/// model. `taken` is the part of the item's width that isn't for text.
void showToolTip(QAbstractItemView &view, const QHelpEvent &event, int taken);

/// Shows a tooltip below a place of the view, as an answer to a key, and has screen readers say it.
void answerByKey(QWidget &view, const QRect &place, const QString &text);

/// Lines as sentences that follow each other.
QString spokenText(const QString &lines);

/// A text on one line, shortened to some thousand characters.
QString shownLine(const QString &text);

/// Shows an item's text on one line.
class PlainTextDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QString displayText(const QVariant &value, const QLocale &locale) const override;
};

} // namespace veltrona
