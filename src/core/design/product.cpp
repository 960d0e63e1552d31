#include "core/design/product.h"

namespace veltrona {

QString programVersion() {
    return QStringLiteral(VELTRONA_VERSION);
}

} // namespace veltrona
