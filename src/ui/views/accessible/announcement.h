// What a screen reader says without a move of the focus.
#pragma once

class QString;
class QWidget;

namespace veltrona {

/// Nothing happens for an empty sentence, and while no assistive software listens.
void announce(const QWidget &view, const QString &sentence);
void announceCopy(const QWidget &view);

} // namespace veltrona
