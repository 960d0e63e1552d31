// Arithmetic of a chart's axes: round values, their texts, and which labels fit.
#pragma once

#include <QString>

namespace veltrona {

/// Lines at step * n for n from `first` to `last`.
struct AxisScale {
    double step = 1;
    int first = 0;
    int last = 1;
    int decimals = 0; // of the step

    double low() const { return step * first; }
    double high() const { return step * last; }
};

/// The finest scale of steps 1, 2 or 5 times a power of ten that holds 0, `low` and `high` in at
/// most `maxSteps` steps (2 or more). Values that aren't finite count as 0.
AxisScale axisScale(double low, double high, int maxSteps);

QString axisText(const AxisScale &scale, int line);

/// A value as it was set. Narrow blanks separate thousands, since a comma would be a decimal point
/// in some countries.
QString valueText(double value);
/// For screen readers, which would split the number at its blanks.
QString spokenValue(double value);

/// Every n-th bar gets a label, so that labels of `labelWidth` stay `gap` apart.
int labelStep(double columnWidth, double labelWidth, double gap);

} // namespace veltrona
