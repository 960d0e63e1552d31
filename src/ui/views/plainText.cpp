#include "ui/views/plainText.h"

#include "core/base/text.h"
#include "ui/views/accessible/announcement.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

#include <algorithm>

namespace veltrona {

namespace {
// Laying out a name of a megabyte at each repaint would freeze the window.
constexpr int maxShown = 2000;
constexpr int maxUnwrapped = 80; // characters of a line in a tooltip
} // namespace

QString plainToolTip(const QString &text) {
    if (text.isEmpty())
        return {};
    const QString shown = shortened(text, maxShown);
    const bool wraps = std::ranges::any_of(
        shown.split(u'\n'), [](const QString &line) { return line.size() > maxUnwrapped; });
    return u"<div style='white-space:%1'>%2</div>"_s.arg(wraps ? "pre-wrap" : "pre",
                                                         shown.toHtmlEscaped());
}

void showToolTip(QAbstractItemView &view, const QHelpEvent &event, int taken) {
    const QModelIndex index = view.indexAt(event.pos());
    const QRect rect = view.visualRect(index);
    const QString text = shortened(index.data().toString(), maxShown);
    const bool elided =
        index.isValid() && view.fontMetrics().horizontalAdvance(text) > rect.width() - taken;
    const QString note = index.data(Qt::ToolTipRole).toString();
    QStringList parts{elided && !note.contains(text) ? text : QString(), note};
    parts.removeAll(QString());
    QToolTip::showText(event.globalPos(), plainToolTip(parts.join(u'\n')), view.viewport(), rect);
}

void answerByKey(QWidget &view, const QRect &place, const QString &text) {
    QToolTip::showText(view.mapToGlobal(place.bottomLeft()), plainToolTip(text), &view, place);
    announce(view, spokenText(text));
}

QString spokenText(const QString &lines) {
    QStringList sentences = lines.split(u'\n', Qt::SkipEmptyParts);
    for (QString &sentence : sentences) {
        if (!sentence.endsWith(u'.'))
            sentence += u'.';
    }
    return sentences.join(u' ');
}

QString shownLine(const QString &text) {
    return onOneLine(shortened(text, maxShown));
}

QString PlainTextDelegate::displayText(const QVariant &value, const QLocale &) const {
    return shownLine(value.toString());
}

} // namespace veltrona
