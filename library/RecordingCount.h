#pragma once

#include "ports/Skin.h"
#include "ports/Texts.h"
#include "recordings/RecordingList.h"

namespace velmorant {

/// Says in the list's skin how many recordings there are and how many of them are marked, whatever
/// changes them.
class RecordingCount : public RecordingListListener {
  public:
    /// Keeps the references; listens as long as it lives.
    RecordingCount(RecordingList& list, Skin& skin, const Texts& texts);
    ~RecordingCount() override;
    RecordingCount(const RecordingCount&) = delete;
    RecordingCount& operator=(const RecordingCount&) = delete;

    void show();

    void rowsAdded(int, int) override { show(); }
    void rowsRemoved(int, int) override { show(); }
    void rowsChanged(int, int) override;

  private:
    RecordingList& m_list;
    Skin& m_skin;
    const Texts& m_texts;
    int m_shownMarks = -1; ///< most changes to rows leave their marks alone
};

} // namespace velmorant
