#include "recordings/LoadedTracks.h"

#include <utility>

namespace velmorant {

std::shared_ptr<clsDot> LoadedTracks::find(std::int32_t serial) const {
    const auto place = m_places.find(serial);
    return place == m_places.end() ? nullptr : m_entries[place->second].track;
}

void LoadedTracks::add(std::int32_t serial, std::shared_ptr<clsDot> track) {
    if (track == nullptr || !m_places.emplace(serial, m_entries.size()).second)
        return;
    m_entries.push_back({serial, std::move(track)});
}

void LoadedTracks::remove(std::int32_t serial) {
    const auto place = m_places.find(serial);
    if (place == m_places.end())
        return;
    const std::size_t removed = place->second;
    m_places.erase(place);
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(removed));
    for (std::size_t i = removed; i < m_entries.size(); ++i)
        m_places[m_entries[i].serial] = i;
}

void LoadedTracks::clear() {
    m_entries.clear();
    m_places.clear();
}

} // namespace velmorant
