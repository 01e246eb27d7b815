#include "common/StepError.h"
#include "server/catalogue/ServedTree.h"
#include "update/builtIn.h"
#include "update/catalogueSignature.h"

#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace velmorant;

constexpr const char* usage =
    "velmorant-catalogue publish RELEASE SERVED --version TEXT [--key FILE] [--main NAME]\n"
    "    Copies a release folder into SERVED/update and makes its catalogue.\n"
    "velmorant-catalogue check SERVED [--public-key TEXT]\n"
    "    Compares a served tree with its catalogue.\n"
    "velmorant-catalogue make-key FILE\n"
    "    Makes a signing key and prints its public half.\n"
    "velmorant-catalogue public-key FILE\n"
    "    Prints the public half of a signing key.\n";

struct Arguments {
    std::vector<std::string> plain;
    std::map<std::string, std::string> options;
};

Arguments readArguments(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (!argument.starts_with("--")) {
            arguments.plain.push_back(argument);
            continue;
        }
        if (i + 1 == argc)
            throw StepError(argument + " needs a value");
        arguments.options[argument] = argv[++i];
    }
    return arguments;
}

std::string readText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw StepError(path + ": the file cannot be read");
    return {std::istreambuf_iterator<char>(file), {}};
}

int publish(Arguments arguments) {
    auto& options = arguments.options;
    PublishRequest request{
        arguments.plain[1], arguments.plain[2], options["--version"], mainProgramName, {}};
    if (options.contains("--main"))
        request.mainProgram = options["--main"];
    if (options.contains("--key"))
        request.privatePem = readText(options["--key"]);
    const PublishReport report = publishRelease(request);
    std::printf("%zu files, %zu of them new, version %s%s\n", report.files, report.newFiles,
                request.mainVersion.c_str(), request.privatePem.empty() ? ", unsigned" : "");
    return 0;
}

int check(Arguments arguments) {
    const auto faults = checkServedTree(arguments.plain[1], arguments.options["--public-key"]);
    for (const std::string& fault : faults)
        std::printf("%s\n", fault.c_str());
    std::printf("%s\n", faults.empty() ? "The served tree fits its catalogue." : "NOT in order.");
    return faults.empty() ? 0 : 1;
}

int makeKey(const std::string& path) {
    const SigningKey key = makeSigningKey();
    // Never over another key, and for its owner's eyes alone.
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0)
        throw StepError(path + ": the file exists already or cannot be made");
    const auto size = static_cast<ssize_t>(key.privatePem.size());
    const bool written = ::write(file, key.privatePem.data(), key.privatePem.size()) == size;
    if (::close(file) != 0 || !written)
        throw StepError(path + ": the key could not be written");
    std::printf("%s\n", key.publicKey.c_str());
    return 0;
}

int run(const Arguments& arguments) {
    const std::vector<std::string>& plain = arguments.plain;
    const std::string command = plain.empty() ? "" : plain[0];
    if (command == "publish" && plain.size() == 3)
        return publish(arguments);
    if (command == "check" && plain.size() == 2)
        return check(arguments);
    if (command == "make-key" && plain.size() == 2)
        return makeKey(plain[1]);
    if (command == "public-key" && plain.size() == 2) {
        std::printf("%s\n", publicKeyOf(readText(plain[1])).c_str());
        return 0;
    }
    std::fputs(usage, stderr);
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(readArguments(argc, argv));
    } catch (const StepError& error) {
        std::fprintf(stderr, "velmorant-catalogue: %s\n", error.what());
        return 1;
    }
}
