#include "core/shell/version.h"

namespace veltrona {

QString programVersion() {
    return QStringLiteral(VELTRONA_VERSION);
}

} // namespace veltrona
