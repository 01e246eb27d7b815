#include <iostream>
#include <unistd.h>

#include "extractor/command/DvrTrackCommand.h"
#include "extractor/command/main/SignalWatch.h"

int main(int count, char** values) {
    using namespace velmorant::telemetry;
    std::ios::sync_with_stdio(false);
    UnfinishedFiles unfinished;
    const SignalWatch watch(unfinished);
    const std::vector<std::string> arguments(values + (count > 0 ? 1 : 0), values + count);
    const Terminal terminal = ::isatty(STDERR_FILENO) != 0 ? Terminal::yes : Terminal::no;
    return runDvrTrack(arguments, std::cout, std::cerr, terminal, unfinished);
}
