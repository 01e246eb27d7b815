// One key-length-value record of GPMF and the numbers in it.
#pragma once

#include <array>
#include <string>

#include "telemetry/Box.h"

namespace velmorant::telemetry {

struct GpmfRecord {
    FourCharacterCode key = 0;
    char type = 0;
    std::size_t structSize = 0;
    std::size_t repeat = 0; // rows that the data really holds
    Bytes data;
};

// Walks the records of a payload or of a record that holds further ones.
class GpmfWalker {
  public:
    explicit GpmfWalker(Bytes bytes) : bytes_(bytes) {}
    // False at the end, or at a record that claims more than is left.
    bool next(GpmfRecord& record);
    // Whether a record claimed more than there was.
    bool cut() const { return cut_; }

  private:
    bool cut_ = false;
    Bytes bytes_;
    std::size_t at_ = 0;
};

// The letters of a structure; "f[3]" in TYPE repeats a letter.
std::string gpmfFields(const GpmfRecord& type);

// The first numbers of a row, in place: a recording has many rows and no row that is read has more.
class GpmfRow {
  public:
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    bool full() const { return size_ == values_.size(); }
    double operator[](std::size_t i) const { return values_[i]; }
    // Numbers beyond the room are left out.
    void push_back(double value) {
        if (size_ < values_.size()) {
            values_[size_++] = value;
        }
    }
    void clear() { size_ = 0; }

  private:
    std::array<double, 10> values_{};
    std::size_t size_ = 0;
};

// The numbers of the record's row, each divided by its scale. `fields` is used where the type is
// '?'; empty on a row that does not exist.
GpmfRow gpmfRow(const GpmfRecord& record, std::size_t row, std::string_view fields,
                const GpmfRow& scale);

} // namespace velmorant::telemetry
