// update_driver FOLDER SERVER_BASE: brings a folder up to date as the program's window does, but
// without the wait between two entries. Prints the milliseconds from start to end. Ends with 0 when
// the local catalogue is the server's.
#include "app/LanguageTable.h"
#include "app/PosixHostPaths.h"
#include "desktop/gate/HandlerGate.h"
#include "desktop/transfer/CurlHttpTransfer.h"
#include "settings/frmUpdate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <string>
#include <utility>

namespace {

using namespace velmorant;

/// Ticks in the next round of the event loop, whatever the interval.
class ImmediateTimer : public Timer {
  public:
    ImmediateTimer() {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            if (m_tick)
                m_tick();
        });
    }
    void setInterval(std::chrono::milliseconds) override {}
    void setEnabled(bool enabled) override {
        if (enabled)
            m_timer.start(0);
        else
            m_timer.stop();
    }
    bool enabled() const override { return m_timer.isActive(); }
    void onTick(std::function<void()> tick) override { m_tick = std::move(tick); }

  private:
    QTimer m_timer;
    std::function<void()> m_tick;
};

class NoWindow : public Window, public UpdateProgress {
  public:
    void show() override {}
    void showModal() override {}
    void close() override { QCoreApplication::quit(); }
    void setForeground() override {}
    void setCaption(const std::string&) override {}
    void move(int, int) override {}
    void resize(int, int) override {}
    int left() const override { return 0; }
    int top() const override { return 0; }
    void showSum(int, int) override {}
    void showSingle(std::int64_t, std::int64_t) override {}
    void showStatus(const std::string&) override {}
};

/// Tells why a run ended, and wants no new main program.
class PrintedMessages : public MessageBox {
  public:
    MessageAnswer show(const std::string& text, const std::string&, MessageStyle) override {
        std::fprintf(stderr, "%s\n", text.c_str());
        return MessageAnswer::No;
    }
};

class NoShell : public Shell {
  public:
    int execute(const std::string&, const std::string&, const std::string&, const std::string&,
                ShowWindow) override {
        return 0;
    }
    std::string lastErrorDescription() const override { return "nothing is started here"; }
    std::optional<ProgramEnd> lastProgramEnd() override { return std::nullopt; }
    void stopLastProgram() override {}
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "update_driver FOLDER SERVER_BASE\n");
        return 2;
    }
    const QCoreApplication application(argc, argv);
    const std::string folder = argv[1];
    SettingsState settings;
    settings.setLanguage(1001);
    const LanguageTable texts(settings, argv[2]);
    const PosixHostPaths paths([](const std::string&) { return std::nullopt; }, folder);
    NoWindow window;
    HandlerGate gate;
    CurlHttpTransfer transfer(gate.delivery());
    ImmediateTimer startLoad;
    ImmediateTimer allLoad;
    ImmediateTimer close;
    PrintedMessages messages;
    NoShell shell;
    frmUpdate update({window, window, transfer, startLoad, allLoad, close, texts, messages, shell,
                      paths, "Velmorant DVR Tools"});
    QElapsedTimer time;
    time.start();
    update.Open(UpdateOpening::OnRequest);
    if (update.running())
        QCoreApplication::exec();
    std::printf("%lld\n", static_cast<long long>(time.elapsed()));
    const ProgramTree tree(folder);
    const auto local = tree.readFile(ProgramPath::own("config.mp4"), Catalogue::largestFile);
    const auto remote =
        tree.readFile(ProgramPath::own("update/remote.mp4"), Catalogue::largestFile);
    return local && local == remote ? 0 : 1;
}
