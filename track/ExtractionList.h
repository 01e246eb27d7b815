#pragma once

#include <string>

namespace velmorant {

/// What track extraction needs of the recording list. Rows are 1-based.
class ExtractionList {
  public:
    virtual ~ExtractionList() = default;
    virtual int count() const = 0;
    virtual int selected() const = 0; ///< 0: none
    virtual void select(int row) = 0;
    virtual bool isMarked(int row) const = 0;
    virtual std::string path(int row) const = 0;       ///< column 3
    virtual std::string serialText(int row) const = 0; ///< column 5
    virtual void setExtractedAndShown(int row) = 0;    ///< columns 4 and 6 become "1"
    virtual void setMissing(int row) = 0;              ///< column 8 becomes "1"
    /// Removes the rows whose column 8 is "1", the first one first, until none is left.
    virtual void removeMissingRows() = 0;
    /// Keeps why a recording has no track, or not all of it, for the row's tool tip.
    virtual void noteReason(int row, const std::string& reason) = 0;
};

} // namespace velmorant
