#pragma once

#include <string>

namespace velmorant {

/// What the recording list asks of the map pane.
class RecordingListMap {
  public:
    virtual ~RecordingListMap() = default;
    virtual bool pageLoaded() const = 0;                 ///< the map browser's flag is 1
    virtual void runScript(const std::string& text) = 0; ///< in the page
    virtual void refreshMyList() = 0;                    ///< the pane's skin element "mylist"
};

} // namespace velmorant
