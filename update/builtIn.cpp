#include "update/builtIn.h"

namespace velmorant {

std::string builtInUpdateKey() {
    return VELMORANT_UPDATE_KEY;
}

} // namespace velmorant
