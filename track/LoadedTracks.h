#pragma once

#include "track/clsDot.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velmorant {

/// What the extractor says of one sample beyond the dot of the same number.
struct SampleDetails {
    bool hasFix = true;               ///< false: the place is the last one known, the speed is 0
    std::string fixReason;            ///< why there is no fix
    std::optional<double> strongestG; ///< in g, of the second's readings; the dot holds their mean
    std::optional<double> altitude;   ///< metres
    std::string recordedTime;         ///< as the recorder wrote it; empty when unknown
};

/// What the extractor says of a whole recording.
struct TrackDetails {
    std::string timeBase; ///< "utc", "camera", "creation" or "none"; empty when unknown
    std::vector<SampleDetails> samples; ///< sample i belongs to dot i + 1; may be empty
};

/// The key of a recording's track: its serial number followed by "No". The one place that makes it.
std::string trackKey(std::string_view serialText);

/// The table of loaded tracks, in the order in which they were added. Tracks are shared: the
/// current track outlives its removal from the table.
class LoadedTracks {
  public:
    struct Entry {
        std::string key;
        std::shared_ptr<clsDot> track; ///< never null
        TrackDetails details;
    };

    bool contains(std::string_view key) const;
    std::shared_ptr<clsDot> find(std::string_view key) const; ///< null when absent
    /// Null when absent; valid until the table changes.
    const TrackDetails* details(std::string_view key) const;
    /// Does nothing when the key is present.
    void add(const std::string& key, std::shared_ptr<clsDot> track, TrackDetails details = {});
    void remove(std::string_view key); ///< an absent key is no error
    void clear();

    std::size_t size() const { return m_entries.size(); }
    std::vector<Entry>::const_iterator begin() const { return m_entries.begin(); }
    std::vector<Entry>::const_iterator end() const { return m_entries.end(); }

  private:
    const Entry* entry(std::string_view key) const;

    std::vector<Entry> m_entries;
    std::unordered_map<std::string, std::size_t> m_places; ///< key -> place in m_entries
};

} // namespace velmorant
