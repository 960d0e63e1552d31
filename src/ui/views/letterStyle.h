// Indicators and arrows that grow with large letters, in the styles that fix their size.
#pragma once

class QWidget;

namespace veltrona {

/// Gives a control with large letters a style of its own that draws indicators and arrows in
/// proportion, and otherwise the application's. To be called again when font or style change.
void fitStyleToLetters(QWidget &control);

} // namespace veltrona
