#include "track/LoadedTracks.h"

#include <utility>

namespace velmorant {

std::string trackKey(std::string_view serialText) {
    return std::string(serialText) + "No";
}

const LoadedTracks::Entry* LoadedTracks::entry(std::string_view key) const {
    const auto place = m_places.find(std::string(key));
    return place == m_places.end() ? nullptr : &m_entries[place->second];
}

bool LoadedTracks::contains(std::string_view key) const {
    return entry(key) != nullptr;
}

std::shared_ptr<clsDot> LoadedTracks::find(std::string_view key) const {
    const Entry* found = entry(key);
    return found == nullptr ? nullptr : found->track;
}

const TrackDetails* LoadedTracks::details(std::string_view key) const {
    const Entry* found = entry(key);
    return found == nullptr ? nullptr : &found->details;
}

void LoadedTracks::add(const std::string& key, std::shared_ptr<clsDot> track,
                       TrackDetails details) {
    if (track == nullptr || !m_places.emplace(key, m_entries.size()).second)
        return;
    m_entries.push_back({key, std::move(track), std::move(details)});
}

void LoadedTracks::remove(std::string_view key) {
    const auto place = m_places.find(std::string(key));
    if (place == m_places.end())
        return;
    const std::size_t removed = place->second;
    m_places.erase(place);
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(removed));
    for (std::size_t i = removed; i < m_entries.size(); ++i)
        m_places[m_entries[i].key] = i;
}

void LoadedTracks::clear() {
    m_entries.clear();
    m_places.clear();
}

} // namespace velmorant
