#pragma once

#include "settings/frmAbout.h"

namespace velmorant {

/// What the about box tells of this build and of the libraries that it runs with.
ProgramFacts programFacts();

} // namespace velmorant
