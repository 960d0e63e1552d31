// When the progress of an import is painted: about thirty times, however long the import is.
#pragma once

namespace veltrona {

/// Whether the step from `valueBefore` to the next value is painted on a bar that ends at `max`.
constexpr bool progressRepaints(int valueBefore, int max) {
    constexpr int repaints = 30;
    return max < repaints || valueBefore % (max / repaints) == 0;
}

} // namespace veltrona
