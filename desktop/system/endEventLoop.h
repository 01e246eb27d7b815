#pragma once

namespace velmorant {

/// Ends the program's event loop as soon as it runs and the present handler has returned. No window
/// is asked whether it may close.
void endEventLoop();

} // namespace velmorant
