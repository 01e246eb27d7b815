#include "library/RecordingCount.h"

#include "common/fillIn.h"
#include "common/trapErrors.h"

#include <string>

namespace velmorant {

RecordingCount::RecordingCount(RecordingList& list, Skin& skin, const Texts& texts)
    : m_list(list), m_skin(skin), m_texts(texts) {
    m_list.addListener(*this);
}

RecordingCount::~RecordingCount() {
    m_list.removeListener(*this);
}

void RecordingCount::show() {
    trapErrors([this] {
        const char* const name = m_list.count() == 1 ? "list.recording" : "list.recordings";
        const std::string counted =
            fillIn(m_texts.addition(name), "%1", std::to_string(m_list.count()));
        m_skin.setText("place.count", fillIn(counted, "%2", std::to_string(m_list.markedCount())));
        m_shownMarks = m_list.markedCount();
    });
}

void RecordingCount::rowsChanged(int, int) {
    if (m_list.markedCount() != m_shownMarks)
        show();
}

} // namespace velmorant
