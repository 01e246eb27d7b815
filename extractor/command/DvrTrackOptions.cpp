#include "extractor/command/DvrTrackOptions.h"

#include <charconv>

namespace velmorant::telemetry {

const char dvrTrackHelp[] =
    "usage: dvr-track [options] RECORDING|FOLDER...\n"
    "Reads the GPS track and the acceleration that car recorders keep in their recordings.\n"
    "\n"
    "Without a format it lists the recordings: family of the format, samples, share with a fix,\n"
    "time base, and what is wrong.\n"
    "\n"
    "  -f, --format FORMAT  write gpx, kml, geojson or csv\n"
    "  -o, --output PATH    into this file, or, for an existing folder, one file per recording\n"
    "                       or trip (default, and for -: the standard output); recordings are\n"
    "                       never written over\n"
    "  -r, --recursive      folders with all that is in them\n"
    "      --join[=SECONDS] join recordings that follow one another within SECONDS (default 10)\n"
    "                       to trips, each camera's for itself\n"
    "      --raw            every position as recorded, believable or not\n"
    "      --explain        say in plain words what each recording's track was read from, which\n"
    "                       clock its times are from, and what is trusted and what not\n"
    "      --check          one line per recording, folders with all that is in them: seconds,\n"
    "                       fixes, clock, gaps, damage; exit code 1 where one leaves to be "
    "desired\n"
    "      --json           the list or the explanations as JSON\n"
    "  -j, --jobs N         recordings read at once (default: one per processor)\n"
    "      --no-progress    no progress bar\n"
    "      --help           this text\n"
    "      --version        the version\n"
    "\n"
    "Exit codes: 0 all recordings have telemetry; 1 one has none or is damaged beyond use;\n"
    "2 wrong use; 3 one cannot be read, or the output cannot be written.\n";

namespace {

bool readNumber(const std::string& text, int least, int most, int& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && value >= least &&
           value <= most;
}

// Options with a value, as "--name value", "--name=value" or "-n value".
class ArgumentReader {
  public:
    explicit ArgumentReader(const std::vector<std::string>& arguments) : arguments_(arguments) {}

    DvrTrackRequest read() {
        while (at_ < arguments_.size()) {
            const std::string& word = arguments_[at_++];
            if (word == "--help" || word == "-h") {
                return HelpWanted{};
            }
            if (word == "--version") {
                return VersionWanted{};
            }
            if (!readWord(word)) {
                return WrongUse{reason_};
            }
        }
        if (options_.paths.empty()) {
            return WrongUse{"no recording is named"};
        }
        if (options_.json && options_.format) {
            return WrongUse{"--json lists the recordings; it does not go with --format"};
        }
        const bool check = options_.task == DvrTrackOptions::Task::check;
        if (options_.task != DvrTrackOptions::Task::track &&
            (options_.format || (check && options_.json))) {
            return WrongUse{"--explain and --check write no track; --check writes no JSON"};
        }
        return options_;
    }

  private:
    bool readWord(const std::string& word) {
        if (onlyPaths_ || word.size() < 2 || word[0] != '-') {
            options_.paths.push_back(word);
            return true;
        }
        if (word == "--") {
            onlyPaths_ = true;
            return true;
        }
        const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string::npos;
        const std::string name = word.substr(0, equals);
        inlineValue_.reset();
        if (equals != std::string::npos) {
            inlineValue_ = word.substr(equals + 1);
        }
        reason_ = "unknown option " + name;
        return readSwitch(name) || readValueOption(name);
    }

    bool readSwitch(const std::string& name) {
        if (name == "--join") {
            int seconds = 10;
            if (inlineValue_ && !readNumber(*inlineValue_, 0, 86400, seconds)) {
                reason_ = "--join takes seconds";
                return false;
            }
            options_.joinWithin = seconds;
            return true;
        }
        if (inlineValue_) {
            return false;
        }
        if (name == "-r" || name == "--recursive") {
            options_.recursion = Recursion::on;
        } else if (name == "--explain") {
            options_.task = DvrTrackOptions::Task::explain;
        } else if (name == "--check") {
            options_.task = DvrTrackOptions::Task::check;
            options_.recursion = Recursion::on;
        } else if (name == "--raw") {
            options_.positions = Positions::raw;
        } else if (name == "--json") {
            options_.json = true;
        } else if (name == "--no-progress") {
            options_.progress = ProgressBar::never;
        } else {
            return false;
        }
        return true;
    }

    bool readValueOption(const std::string& name) {
        const bool format = name == "-f" || name == "--format";
        const bool output = name == "-o" || name == "--output";
        const bool jobs = name == "-j" || name == "--jobs";
        if (!format && !output && !jobs) {
            return false;
        }
        if (!inlineValue_ && at_ == arguments_.size()) {
            reason_ = name + " needs a value";
            return false;
        }
        const std::string value = inlineValue_ ? *inlineValue_ : arguments_[at_++];
        if (format) {
            options_.format = exportFormatNamed(value);
            reason_ = "unknown format " + value;
            return options_.format.has_value();
        }
        if (output) {
            options_.output = value;
            reason_ = "--output needs a path";
            return !value.empty();
        }
        reason_ = "--jobs takes a number from 1 to 256";
        return readNumber(value, 1, 256, options_.jobs);
    }

    const std::vector<std::string>& arguments_;
    std::size_t at_ = 0;
    DvrTrackOptions options_;
    std::optional<std::string> inlineValue_;
    bool onlyPaths_ = false;
    std::string reason_;
};

} // namespace

DvrTrackRequest readDvrTrackOptions(const std::vector<std::string>& arguments) {
    return ArgumentReader(arguments).read();
}

} // namespace velmorant::telemetry
