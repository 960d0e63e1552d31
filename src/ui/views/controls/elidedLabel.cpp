#include "ui/views/controls/elidedLabel.h"

#include "core/base/text.h"
#include "ui/views/plainText.h"

#include <QHelpEvent>
#include <QToolTip>

namespace veltrona {

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setFullText(const QString &text) {
    m_fullText = text;
    setAccessibleName(text);
    elide();
}

// Not the toolTip property: screen readers would read its markup.
bool ElidedLabel::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), plainToolTip(m_fullText),
                       this);
    return true;
}

void ElidedLabel::resizeEvent(QResizeEvent *event) {
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::changeEvent(QEvent *event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        elide();
}

void ElidedLabel::elide() {
    setText(fontMetrics().elidedText(onOneLine(m_fullText), Qt::ElideMiddle, width()));
}

} // namespace veltrona
