#include "common/StepError.h"
#include "track/TrackFileReader.h"
#include "xml/ExpatDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

// The reader loads a file; the fuzzer's input becomes one in the temporary folder.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmorant;
    static const std::string path =
        (std::filesystem::temp_directory_path() / "velmorant-track-file-fuzzer.kml").string();
    {
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    ExpatDocument document;
    TrackFileReader reader(document);
    try {
        reader.load(path);
        reader.recording();
        reader.error();
        reader.notice();
        const std::shared_ptr<clsDot> read = reader.read();
        const bool hasTrack = read != nullptr;
        if (hasTrack != (reader.sampleCount() > 0))
            std::abort();
        if (hasTrack) {
            clsDot& track = *read;
            if (static_cast<std::size_t>(track.count()) != reader.sampleCount() ||
                track.details().samples.size() != reader.sampleCount())
                std::abort();
            if (track.minimumG() > 0 || track.maximumG() < 0 || track.maximumSpeed() < 0)
                std::abort();
            track.ForcePlayLocal(1);
            track.lPtLocal(track.dot(1).x, track.dot(1).y);
        }
    } catch (const StepError&) {
        // a refusal with its reason
    }
    return 0;
}
