// When the progress of an import is painted: about thirty times, whatever its length.
#pragma once

namespace veltrona {

/// Whether the step after `valueBefore` is painted on a bar that ends at `max`.
constexpr bool progressRepaints(int valueBefore, int max) {
    constexpr int repaints = 30;
    return max < repaints || valueBefore % (max / repaints) == 0;
}

} // namespace veltrona
