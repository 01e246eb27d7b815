#include "tests/gui/ProgramTest.h"

#include "app/PosixHostPaths.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace velmorant {

namespace fs = std::filesystem;

namespace {

constexpr const char* programParts[] = {"map", "skin", "system", "movsupport"};

/// Made once for all tests of a build folder. Several tests may begin at once, each a process of
/// its own: each makes a card beside the place, and the first to be ready moves it there.
const std::string& card() {
    static const std::string folder = VELMORANT_CARD;
    static const bool made = [] {
        if (fs::exists(folder + "/complete"))
            return true;
        const std::string own = folder + "." + std::to_string(getpid());
        const std::string command = std::string("'") + VELMORANT_MAKE_CARD + "' '" + own +
                                    "' --recordings 4 --seconds 8 --one-picture >/dev/null";
        if (std::system(command.c_str()) != 0)
            throw std::runtime_error("the sample card cannot be made: " + command);
        std::ofstream(own + "/complete").put('\n');
        std::error_code taken;
        fs::rename(own, folder, taken);
        if (taken)
            fs::remove_all(own);
        return true;
    }();
    static_cast<void>(made);
    return folder;
}

} // namespace

ProgramTest::ProgramTest() {
    prepareFolders();
    QObject::connect(&m_boxReader, &QTimer::timeout, [this] { readBox(); });
    m_boxReader.start(20);
}

ProgramTest::~ProgramTest() = default;

void ProgramTest::prepareFolders() {
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        m_environment[variable] = folder() + "/" + variable;
        fs::create_directories(m_environment[variable]);
        // The toolkit and libmpv look there by themselves.
        qputenv(variable, m_environment[variable].c_str());
    }
    m_environment["VELMORANT_JOURNAL"] = folder() + "/journal";
    fs::create_directories(folder() + "/program");
    for (const char* part : programParts)
        fs::copy(std::string(VELMORANT_PROGRAM) + "/" + part, folder() + "/program/" + part,
                 fs::copy_options::recursive);
}

void ProgramTest::readBox() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(window);
        if (box == nullptr || !box->isVisible() || box->property("read").toBool())
            continue;
        box->setProperty("read", true);
        boxes.push_back(box->text().toStdString());
        box->defaultButton()->click();
    }
}

void ProgramTest::beginStart(const std::string& language) {
    const EnvironmentLookup environment = [values = m_environment](const std::string& name) {
        const auto found = values.find(name);
        return found == values.end() ? std::nullopt : std::optional<std::string>(found->second);
    };
    const std::string program = folder() + "/program";
    const fs::path configuration = PosixHostPaths(environment, program).globalConfigurationFile();
    fs::create_directories(configuration.parent_path());
    std::ofstream(configuration) << "[config]\nmainv=" << language << "\nArea=2021\nUnit=1001\n";
    m_program = std::make_unique<Application>(environment, program);
    ASSERT_EQ(m_program->start(""), StartUpResult::Running);
}

bool ProgramTest::startAndEnd(const std::string& language) {
    beginStart(language);
    QTimer::singleShot(limit, qApp, [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec() == 0;
}

void ProgramTest::start(const std::string& language) {
    ASSERT_NO_FATAL_FAILURE(beginStart(language));
    m_driver = std::make_unique<ProgramDriver>(*m_program);
    ASSERT_TRUE(waitUntil([this] { return m_driver->windowShown(); }))
        << "no window with a loaded map page";
}

void ProgramTest::end() {
    m_driver.reset();
    m_program.reset();
}

void ProgramTest::add(const std::vector<std::string>& paths) {
    const int before = m_driver->rowCount();
    rooms().list->AddPaths(paths);
    ASSERT_EQ(m_driver->rowCount(), before + static_cast<int>(paths.size()));
}

void ProgramTest::extractAll() {
    m_driver->clickList("all");
    ASSERT_TRUE(waitUntil([this] {
        return !m_driver->extracting() && !m_program->host().gate.busy();
    })) << "the extraction does not end";
}

void ProgramTest::showOnMap(const std::vector<std::string>& paths) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(add(paths));
    ASSERT_NO_FATAL_FAILURE(extractAll());
    ASSERT_NO_FATAL_FAILURE(waitForRoutes(static_cast<int>(paths.size())));
}

void ProgramTest::waitForRoutes(int count) {
    int seen = 0;
    ASSERT_TRUE(waitUntil([&] { return (seen = m_driver->map().routeCount()) == count; }))
        << seen << " routes on the map, " << count << " wanted";
}

void ProgramTest::play(int row) {
    m_driver->doubleClickRow(row);
    ASSERT_TRUE(waitUntil([&] { return m_driver->playing(row); }))
        << "row " << row << " does not play";
    ASSERT_TRUE(waitUntil([&] { return m_driver->map().carIndex() > 0; })) << "no car on the map";
}

void ProgramTest::waitForPosition(double atLeast, double atMost) {
    ASSERT_TRUE(waitUntil([&] {
        const double now = m_driver->position();
        return now >= atLeast && now <= atMost;
    })) << "position "
        << m_driver->position() << ", wanted " << atLeast << " to " << atMost;
}

std::string ProgramTest::recording(int number) {
    std::vector<std::string> recordings;
    for (const auto& entry : fs::recursive_directory_iterator(card()))
        if (entry.is_regular_file() && entry.path().extension() == ".MP4")
            recordings.push_back(entry.path().string());
    std::sort(recordings.begin(), recordings.end());
    return recordings.at(static_cast<std::size_t>(number) - 1);
}

std::string ProgramTest::copied(const std::string& recording, const std::string& relativePath) {
    const fs::path target = fs::path(folder()) / relativePath;
    fs::create_directories(target.parent_path());
    fs::copy_file(recording, target);
    return target.string();
}

std::string ProgramTest::journal() const {
    std::ostringstream text;
    text << std::ifstream(folder() + "/journal").rdbuf();
    return text.str();
}

} // namespace velmorant
