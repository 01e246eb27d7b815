#include "common/StepError.h"
#include "update/Catalogue.h"
#include "update/ProgramPath.h"
#include "update/ProgramTree.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>

namespace {

using namespace velmorant;
namespace fs = std::filesystem;

/// A program folder with a link out of it, beside a folder that must stay as it is.
struct Ground {
    Ground() {
        std::string name = (fs::temp_directory_path() / "velmorant-fuzz-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            std::abort();
        root = name;
        fs::create_directories(root / "program");
        fs::create_directories(root / "outside");
        fs::create_directory_symlink(root / "outside", root / "program" / "link");
    }
    ~Ground() { fs::remove_all(root); }
    Ground(const Ground&) = delete;
    Ground& operator=(const Ground&) = delete;

    fs::path root;
};

void require(bool condition) {
    if (!condition)
        std::abort();
}

void checkPath(const ProgramPath& path) {
    for (const std::string& component : path.components()) {
        require(!component.empty() && component != "." && component != "..");
        require(component.find_first_of("/\\:") == std::string::npos);
    }
    require(!isReserved(path));
    const fs::path joined = (fs::path("/program") / path.text()).lexically_normal();
    require(joined.string().starts_with("/program/"));
}

void writeAndDrop(const Ground& ground, const ProgramPath& path) {
    ProgramTree tree((ground.root / "program").string());
    try {
        tree.beginFile(path);
    } catch (const StepError&) {
        // A name that the disk refuses, or a link.
    }
    require(fs::is_empty(ground.root / "outside"));
    require(std::distance(fs::directory_iterator(ground.root), fs::directory_iterator()) == 2);
    if (path.components().size() > 1 && path.components().front() != "link")
        fs::remove_all(ground.root / "program" / path.components().front());
}

} // namespace

// A catalogue of any bytes: every name that is taken stays inside the program folder.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Ground ground;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const Catalogue catalogue(bytes);
    const int count = std::min<int>(catalogue.entryCount().value_or(0), 8);
    const auto check = [](std::string_view local) {
        const auto path = ProgramPath::fromCatalogue(local);
        if (const auto* taken = std::get_if<ProgramPath>(&path)) {
            checkPath(*taken);
            writeAndDrop(ground, *taken);
        }
    };
    for (int i = 0; i < count; ++i) {
        const CatalogueEntry entry = catalogue.entry(i);
        check(entry.local);
        isRemotePath(entry.remote);
    }
    // Also without the grammar around it, where mutations reach the names faster.
    check(bytes.substr(0, 254));
    return 0;
}
