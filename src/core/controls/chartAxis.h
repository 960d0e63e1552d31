// The arithmetic of a chart's axes: round values, their texts, and which labels there is room for.
#pragma once

#include <QString>

namespace veltrona {

/// Lines at step * n for n from `first` to `last`.
struct AxisScale {
    double step = 1;
    int first = 0;
    int last = 1;
    int decimals = 0; // that the step needs

    double low() const { return step * first; }
    double high() const { return step * last; }
};

/// The finest scale of steps 1, 2 or 5 times a power of ten that holds 0, `low` and `high` in at
/// most `mostSteps` steps (2 or more). Values that aren't finite count as 0.
AxisScale axisScale(double low, double high, int mostSteps);

QString axisText(const AxisScale &scale, int line);

/// A value as it was set, thousands set apart by narrow blanks, so that neither point nor comma can
/// be mistaken for another country's.
QString valueText(double value);
/// The same for a screen reader, which would part such a number at its blanks.
QString spokenValue(double value);

/// Every how many bars a label is shown, so that labels of `labelWidth` stay `gap` apart.
int labelStep(double columnWidth, double labelWidth, double gap);

} // namespace veltrona
