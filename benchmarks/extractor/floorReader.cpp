// floorReader RECORDING RANGES: reads the byte ranges of the recording that the list names, one by
// one, and nothing else: no extractor can read less. The list holds pairs of u64, offset and
// length.
#include <algorithm>
#include <cstdint>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

int main(int count, char** values) {
    if (count != 3) {
        return 2;
    }
    const int recording = ::open(values[1], O_RDONLY);
    const int list = ::open(values[2], O_RDONLY);
    if (recording < 0 || list < 0) {
        return 3;
    }
    std::vector<std::uint64_t> ranges(static_cast<std::size_t>(::lseek(list, 0, SEEK_END)) / 8);
    if (::pread(list, ranges.data(), ranges.size() * 8, 0) < 0) {
        return 3;
    }
    std::uint64_t longest = 0;
    for (std::size_t i = 1; i < ranges.size(); i += 2) {
        longest = std::max(longest, ranges[i]);
    }
    std::vector<char> buffer(longest);
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i + 1 < ranges.size(); i += 2) {
        const auto got =
            ::pread(recording, buffer.data(), ranges[i + 1], static_cast<off_t>(ranges[i]));
        sum += got > 0 ? static_cast<std::uint64_t>(buffer[0]) : 0;
    }
    return sum == 1 ? 1 : 0;
}
