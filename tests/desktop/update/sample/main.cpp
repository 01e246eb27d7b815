// A main program for the tests of the updater. What it does stands at the end of its own file, in
// one line that the test has appended: "runs NAME" or "fails NAME". It writes "running-NAME" with
// its process number into its working folder, and runs until the file "end" is there.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <unistd.h>

int main() {
    std::ifstream self("/proc/self/exe", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(self), std::istreambuf_iterator<char>()};
    const std::string line = bytes.substr(bytes.rfind('\n') + 1);
    if (!line.starts_with("runs "))
        return 3;
    std::ofstream("running-" + line.substr(5)) << ::getpid();
    constexpr int mostRounds = 600;
    for (int i = 0; i < mostRounds && !std::filesystem::exists("end"); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
}
