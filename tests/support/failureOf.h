// The failure that an action throws, if any.
#pragma once

#include "core/base/failure.h"

#include <optional>

namespace veltrona {

template<typename Action>
std::optional<Failure> failureOf(Action action) {
    try {
        action();
    } catch (const Failure &failure) {
        return failure;
    }
    return std::nullopt;
}

} // namespace veltrona
