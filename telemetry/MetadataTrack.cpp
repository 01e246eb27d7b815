#include "telemetry/MetadataTrack.h"

namespace velmorant::telemetry {

namespace {

// One buffer over a stretch of the file; samples inside it need no read of their own.
class Window {
  public:
    explicit Window(Input& input) : input_(input) {}

    Bytes sample(const SampleLocation& where) {
        const bool inside = where.offset >= start_ && where.offset - start_ + where.size <= length_;
        if (!inside) {
            // Small samples have neighbours as a rule, large ones are read alone.
            constexpr std::size_t stretch = 4096;
            const std::size_t wanted = std::max<std::size_t>(where.size, stretch);
            if (buffer_.size() < wanted) {
                buffer_.resize(wanted);
            }
            start_ = where.offset;
            length_ = input_.source().readAt(start_, std::span(buffer_.data(), wanted));
        }
        const Bytes all(std::span<const std::uint8_t>(buffer_.data(), length_));
        return all.from(static_cast<std::size_t>(where.offset - start_), where.size);
    }

  private:
    Input& input_;
    std::vector<std::uint8_t> buffer_;
    std::uint64_t start_ = 0;
    std::size_t length_ = 0;
};

} // namespace

void readSamples(Input& input, const MediaTrack& track, std::size_t longest,
                 const SampleReader& reader) {
    auto table = SampleTable::open(input, track);
    if (!table) {
        input.note(table.error());
        return;
    }
    Window window(input);
    SampleLocation where;
    std::size_t passedOver = 0;
    while (table.value().next(where)) {
        if (where.size > 0 && where.size <= longest) {
            reader(where, window.sample(where));
        } else {
            ++passedOver;
        }
    }
    if (passedOver > 0) {
        input.note(input.error(track.path, 0,
                               std::to_string(passedOver) + " samples are empty or too long"));
    }
}

} // namespace velmorant::telemetry
