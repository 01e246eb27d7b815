#pragma once

namespace velmorant {

/// Lets large blocks that are freed go back to the system at once. Called first in main, before
/// threads allocate. Left to itself the C library raises the size from which it does so with every
/// freed picture, and the heaps of the decoder's threads then keep more than a hundred megabytes
/// of an evening's recordings.
void returnFreedMemory();

} // namespace velmorant
