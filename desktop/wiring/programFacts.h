#pragma once

#include "settings/frmAbout.h"

namespace velmorant {

/// What the about box says about this build and the libraries it runs with.
ProgramFacts programFacts();

} // namespace velmorant
