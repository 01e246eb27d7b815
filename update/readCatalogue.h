#pragma once

#include "update/ProgramTree.h"

#include <string>

namespace velmorant {

/// The bytes of the server's catalogue as it was fetched into the program folder; "" when there is
/// none. With a public key they are returned only when the signature beside them fits. Throws
/// StepError.
std::string readRemoteCatalogue(const ProgramTree& tree, const std::string& publicKey);

} // namespace velmorant
