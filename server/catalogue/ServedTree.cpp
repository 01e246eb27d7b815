#include "server/catalogue/ServedTree.h"

#include "common/StepError.h"
#include "common/textRules.h"
#include "server/catalogue/CatalogueMaker.h"
#include "update/Catalogue.h"
#include "update/ProgramTree.h"
#include "update/catalogueSignature.h"
#include "update/updateFiles.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <span>
#include <utility>
#include <variant>

namespace velmorant {

namespace {

namespace fs = std::filesystem;

std::span<const std::byte> bytesOf(const std::string& text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

bool isLeftOut(const std::string& local) {
    const std::string lower = lowerCase(local);
    return lower.starts_with("update/") || lower == "config.mp4" || lower == "flow.xml";
}

std::vector<ReleaseFile> readRelease(const std::string& folder, const ProgramTree& tree) {
    std::vector<ReleaseFile> files;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(folder, error), end; entry != end;
         entry.increment(error)) {
        const std::string local = entry->path().lexically_relative(folder).generic_string();
        if (isLeftOut(local) || entry->symlink_status().type() == fs::file_type::directory)
            continue;
        if (!entry->is_regular_file() || entry->is_symlink())
            throw StepError(entry->path().string() + ": a release has regular files alone");
        const auto digest = tree.digestOf(ProgramPath::own(local));
        if (!digest)
            throw StepError(entry->path().string() + ": the file is gone");
        files.push_back({local, *digest});
    }
    if (error)
        throw StepError(folder + ": " + error.message());
    return files;
}

void copyContent(const std::string& source, ProgramTree& served, const ReleaseFile& file) {
    std::ifstream stream(source, std::ios::binary);
    auto pending = served.beginFile(ProgramPath::own(servedName(file.sha256)));
    std::vector<char> buffer(65536);
    while (stream) {
        stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        pending->write(
            std::as_bytes(std::span(buffer.data(), static_cast<std::size_t>(stream.gcount()))));
    }
    if (!stream.eof())
        throw StepError(source + ": the file cannot be read");
    served.add(std::move(pending));
}

/// Signatures of the new and of the previous catalogue: between the two renames both fit.
std::string signatureFile(const std::string& privatePem, const std::string& next,
                          const std::string& previous) {
    std::string text = signCatalogue(privatePem, next) + "\n";
    if (!previous.empty())
        text += signCatalogue(privatePem, previous) + "\n";
    return text;
}

void checkEntry(const ProgramTree& tree, const std::string& section, const CatalogueEntry& entry,
                std::set<std::string>& names, std::vector<std::string>& faults) {
    const auto path = ProgramPath::fromCatalogue(entry.local);
    if (const auto* refusal = std::get_if<PathRefusal>(&path)) {
        faults.push_back(section + ": " + refusal->reason);
        return;
    }
    if (!names.insert(lowerCase(std::get<ProgramPath>(path).text())).second)
        faults.push_back(section + ": " + entry.local + " is named twice");
    if (entry.version.empty())
        faults.push_back(section + ": " + entry.local + " has no version");
    if (!isRemotePath(entry.remote)) {
        faults.push_back(section + ": " + entry.remote + " is no place below the server");
        return;
    }
    const auto digest = tree.digestOf(ProgramPath::own(entry.remote));
    if (!digest)
        faults.push_back(section + ": " + entry.remote + " is not served");
    else if (!equalsIgnoringCase(*digest, entry.sha256))
        faults.push_back(section + ": " + entry.remote + " has another content than SHA256 says");
}

void checkSigned(const ProgramTree& tree, const std::string& publicKey, const std::string& text,
                 std::vector<std::string>& faults) {
    const auto signature = tree.readFile(ProgramPath::own(servedSignature), largestSignature);
    if (!signature)
        faults.push_back(std::string(servedSignature) + " is missing");
    else if (checkSignature(publicKey, text, *signature) != SignatureVerdict::Valid)
        faults.push_back(std::string(servedSignature) + " does not fit the catalogue and the key");
}

} // namespace

PublishReport publishRelease(const PublishRequest& request) {
    const ProgramTree release(request.release);
    ProgramTree served(request.served);
    const ProgramPath catalogue = ProgramPath::own(servedCatalogue);
    const std::vector<ReleaseFile> files = readRelease(request.release, release);
    const std::string previous = served.readFile(catalogue, Catalogue::largestFile).value_or("");
    const std::string text =
        makeCatalogue({files, request.mainVersion, request.mainProgram, previous});
    PublishReport report{files.size(), 0};
    for (const ReleaseFile& file : files) {
        if (served.digestOf(ProgramPath::own(servedName(file.sha256))) == file.sha256)
            continue;
        copyContent(request.release + '/' + file.local, served, file);
        ++report.newFiles;
    }
    served.publish();
    if (!request.privatePem.empty())
        served.replaceFile(ProgramPath::own(servedSignature),
                           bytesOf(signatureFile(request.privatePem, text, previous)));
    served.replaceFile(catalogue, bytesOf(text));
    return report;
}

std::vector<std::string> checkServedTree(const std::string& served, const std::string& publicKey) {
    const ProgramTree tree(served);
    const auto text = tree.readFile(ProgramPath::own(servedCatalogue), Catalogue::largestFile);
    if (!text)
        return {std::string(servedCatalogue) + " is missing"};
    std::vector<std::string> faults;
    const Catalogue catalogue(*text);
    if (catalogue.mainVersion().empty())
        faults.emplace_back("the catalogue has no \"mainv\"");
    const auto count = catalogue.entryCount();
    if (!count || *count < 0) {
        faults.emplace_back("the catalogue has no sensible \"mainall\"");
        return faults;
    }
    if (!catalogue.entry(*count).local.empty())
        faults.emplace_back("the catalogue has more entries than \"mainall\" says");
    std::set<std::string> names;
    for (int i = 0; i < *count; ++i)
        checkEntry(tree, "NO" + std::to_string(i), catalogue.entry(i), names, faults);
    if (!publicKey.empty())
        checkSigned(tree, publicKey, *text, faults);
    return faults;
}

} // namespace velmorant
