#include "core/platform/services.h"

namespace veltrona {

Services &services() {
    static Services inForce;
    return inForce;
}

} // namespace veltrona
