#include "shell/elidedLabel.h"

#include <QEvent>
#include <QFontMetrics>

namespace veltrona {

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setFullText(const QString &text) {
    m_fullText = text;
    setAccessibleName(text);
    // A tooltip guesses rich text from its content; escaped in a paragraph it shows every
    // character.
    setToolTip(QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()));
    elide();
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
    QString line = m_fullText;
    // A name may hold line ends; the label has one line.
    line.replace(u'\n', u' ').replace(u'\r', u' ');
    setText(fontMetrics().elidedText(line, Qt::ElideMiddle, width()));
}

} // namespace veltrona
