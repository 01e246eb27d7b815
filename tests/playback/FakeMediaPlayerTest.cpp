#include "tests/fakes/FakeMediaPlayer.h"

#include "tests/ports/PlayerControlsSuite.h"

namespace velmorant {
namespace {

class FakeStage {
  public:
    PlayerControls& controls() { return m_controls; }
    PlayerSettings& settings() { return m_settings; }
    static std::string recording() { return "/card/1.MP4"; }
    static double length() { return 10; }
    bool waitFor(const std::function<bool()>& condition) {
        m_controls.finishOpening(length());
        return condition();
    }

  private:
    fakes::FakePlayerControls m_controls;
    fakes::FakePlayerSettings m_settings;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PlayerControlsSuite, FakeStage);

} // namespace
} // namespace velmorant
