#include "server/catalogue/CatalogueMaker.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "update/Catalogue.h"
#include "update/ProgramPath.h"
#include "update/Sha256.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <utility>
#include <variant>

namespace velmorant {

namespace {

constexpr std::size_t mostFiles = 32767;
constexpr std::size_t longestValue = 254;
constexpr std::size_t versionDigits = 16;

std::string slashed(std::string local) {
    std::replace(local.begin(), local.end(), '\\', '/');
    return local;
}

void checkValue(const std::string& value) {
    const bool quoted = value.starts_with('"') || value.starts_with('\'');
    if (value.empty() || characterCount(value) > longestValue || quoted ||
        value.find_first_of("\r\n") != std::string::npos)
        throw StepError("A catalogue cannot hold \"" + value + "\"");
}

void checkFiles(const CatalogueRequest& request) {
    std::map<std::string, std::string> names;
    if (request.files.size() > mostFiles)
        throw StepError("A catalogue can name no more than 32767 files");
    for (const ReleaseFile& file : request.files) {
        if (file.local.find('\\') != std::string::npos)
            throw StepError("\"" + file.local + "\": a name cannot have a backslash");
        const auto path = ProgramPath::fromCatalogue(file.local);
        if (const auto* refusal = std::get_if<PathRefusal>(&path))
            throw StepError(refusal->reason);
        checkValue(file.local);
        const auto [place, added] = names.emplace(lowerCase(file.local), file.local);
        if (!added)
            throw StepError("\"" + file.local + "\" and \"" + place->second +
                            "\" are one file where case does not matter");
    }
    checkValue(request.mainVersion);
    if (!names.contains(lowerCase(request.mainProgram)))
        throw StepError("The release has no main program \"" + request.mainProgram + "\"");
}

/// The files by number: the old numbers kept, gaps filled with new files, then from the end.
std::vector<ReleaseFile> numbered(const CatalogueRequest& request) {
    std::map<std::string, ReleaseFile> rest;
    std::optional<ReleaseFile> mainProgram;
    for (const ReleaseFile& file : request.files) {
        if (equalsIgnoringCase(file.local, request.mainProgram))
            mainProgram = file;
        else
            rest.emplace(file.local, file);
    }
    const Catalogue previous(request.previous);
    const std::size_t count = rest.size();
    std::vector<std::optional<ReleaseFile>> slots(count);
    const int known = previous.entryCount().value_or(0);
    for (int i = 0; i < known && static_cast<std::size_t>(i) < count; ++i) {
        const auto found = rest.find(slashed(previous.entry(i).local));
        if (found != rest.end()) {
            slots[static_cast<std::size_t>(i)] = found->second;
            rest.erase(found);
        }
    }
    std::vector<ReleaseFile> files;
    files.reserve(count + 1);
    auto next = rest.begin();
    for (const auto& slot : slots)
        files.push_back(slot ? *slot : (next++)->second);
    files.push_back(*mainProgram);
    return files;
}

std::string backslashed(std::string local) {
    std::replace(local.begin(), local.end(), '/', '\\');
    return local;
}

} // namespace

std::string servedName(const std::string& sha256) {
    return "update/files/" + sha256;
}

std::string makeCatalogue(const CatalogueRequest& request) {
    checkFiles(request);
    const std::vector<ReleaseFile> files = numbered(request);
    std::string text = "[config]\r\nmainv=" + request.mainVersion +
                       "\r\nmainall=" + std::to_string(files.size()) + "\r\n";
    for (std::size_t i = 0; i < files.size(); ++i) {
        const ReleaseFile& file = files[i];
        const std::string version =
            Sha256::of(file.local + '\n' + file.sha256).substr(0, versionDigits);
        text += "[NO" + std::to_string(i) + "]\r\nLOCAL=" + backslashed(file.local) +
                "\r\nREMOTE=" + servedName(file.sha256) + "\r\nVERSION=" + version +
                "\r\nSHA256=" + file.sha256 + "\r\n";
    }
    return text;
}

} // namespace velmorant
