// What an attack says of a finding: the message goes to standard error, and the program ends by
// abort(), which the fuzzer and the replay both take for a failure.
#pragma once

#include <QtGlobal>

namespace veltrona::attack {

/// FINDING_UNLESS(a == b, "what differs: %s", text)
#define FINDING_UNLESS(condition, ...) \
    do {                               \
        if (!(condition))              \
            qFatal(__VA_ARGS__);       \
    } while (false)

} // namespace veltrona::attack
