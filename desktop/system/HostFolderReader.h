#pragma once

#include "ports/FolderReader.h"

namespace velmorant {

/// The folders of this machine, for adding a card as a whole.
class HostFolderReader : public FolderReader {
  public:
    FolderContent read(const std::string& folder) const override;
};

} // namespace velmorant
