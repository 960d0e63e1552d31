#include "ui/views/plainText.h"

#include "core/base/text.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

#include <algorithm>

namespace veltrona {

namespace {
// Laying out a name of a megabyte at each repaint would freeze the window.
constexpr int longestShown = 2000;
constexpr int longestUnwrapped = 80; // characters of a line in a tooltip
} // namespace

QString plainToolTip(const QString &text) {
    if (text.isEmpty())
        return {};
    const QStringList lines = shortened(text, longestShown).split(QLatin1Char('\n'));
    const bool wraps = std::any_of(lines.begin(), lines.end(), [](const QString &line) {
        return line.size() > longestUnwrapped;
    });
    return QStringLiteral("<div style='white-space:%1'>%2</div>")
        .arg(wraps ? QStringLiteral("pre-wrap") : QStringLiteral("pre"),
             lines.join(QLatin1Char('\n')).toHtmlEscaped());
}

void showToolTip(QAbstractItemView &view, const QHelpEvent &event, int taken) {
    const QModelIndex index = view.indexAt(event.pos());
    const QRect rect = view.visualRect(index);
    const QString text = shortened(index.data().toString(), longestShown);
    const bool elided =
        index.isValid() && view.fontMetrics().horizontalAdvance(text) > rect.width() - taken;
    const QString told = index.data(Qt::ToolTipRole).toString();
    QStringList parts{elided && !told.contains(text) ? text : QString(), told};
    parts.removeAll(QString());
    QToolTip::showText(event.globalPos(), plainToolTip(parts.join(QLatin1Char('\n'))),
                       view.viewport(), rect);
}

QString shownLine(const QString &text) {
    return onOneLine(shortened(text, longestShown));
}

QString PlainTextDelegate::displayText(const QVariant &value, const QLocale &) const {
    return shownLine(value.toString());
}

} // namespace veltrona
