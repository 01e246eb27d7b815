#pragma once

#include <cstdint>
#include <string>

namespace velmorant {

/// The rows that a RecordingListView shows. Indexes are 1-based and always of an existing row.
class RowSource {
  public:
    enum class Mark { NotMarked = 1, Marked = 2 };
    enum class Weight { Normal, Bold };

    virtual ~RowSource() = default;
    virtual int rowCount() const = 0;
    /// Date and time, two blanks, the kind label.
    virtual std::string displayText(int row) const = 0;
    virtual std::string kindLabel(int row) const = 0;
    virtual std::string toolTip(int row) const = 0;
    virtual Mark mark(int row) const = 0;
    virtual std::int32_t colour(int row) const = 0; ///< red + 256 * green + 65536 * blue
    virtual Weight weight(int row) const = 0;       ///< bold: it plays
};

} // namespace velmorant
