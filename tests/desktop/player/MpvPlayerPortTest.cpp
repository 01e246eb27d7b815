#include "desktop/player/MpvPlayer.h"
#include "tests/desktop/eventLoop.h"
#include "tests/desktop/player/TestMedia.h"
#include "tests/ports/PlayerControlsSuite.h"

namespace velmorant {
namespace {

class MpvStage {
  public:
    PlayerControls& controls() { return m_player; }
    PlayerSettings& settings() { return m_player; }
    static std::string recording() { return testMedium(TestMedium::TenSeconds); }
    static double length() { return 10; }
    static bool waitFor(const std::function<bool()>& condition) {
        return velmorant::waitFor(condition);
    }

  private:
    MpvPlayer m_player{VideoOutput::None, AudioOutput::None};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mpv, PlayerControlsSuite, MpvStage);

} // namespace
} // namespace velmorant
