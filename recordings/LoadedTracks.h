#pragma once

#include "recordings/clsDot.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace velmorant {

/// The table of loaded tracks by their recordings' serial numbers, in the order in which they were
/// added. Tracks are shared: the current track outlives its removal from the table.
class LoadedTracks {
  public:
    struct Entry {
        std::int32_t serial = 0;
        std::shared_ptr<clsDot> track; ///< never null
    };

    bool contains(std::int32_t serial) const { return m_places.count(serial) > 0; }
    std::shared_ptr<clsDot> find(std::int32_t serial) const; ///< null when absent
    /// Does nothing when the recording has a track already, or without a track.
    void add(std::int32_t serial, std::shared_ptr<clsDot> track);
    void remove(std::int32_t serial); ///< removing an absent one is not an error
    void clear();

    std::size_t size() const { return m_entries.size(); }
    std::vector<Entry>::const_iterator begin() const { return m_entries.begin(); }
    std::vector<Entry>::const_iterator end() const { return m_entries.end(); }

  private:
    std::vector<Entry> m_entries;
    std::unordered_map<std::int32_t, std::size_t> m_places; ///< serial -> place in m_entries
};

} // namespace velmorant
