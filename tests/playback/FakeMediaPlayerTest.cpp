#include "tests/fakes/FakeMediaPlayer.h"

#include "tests/ports/PlayerControlsSuite.h"

namespace velmorant {
namespace {

class FakeStage {
  public:
    PlayerControls& controls() { return controls_; }
    PlayerSettings& settings() { return settings_; }
    static std::string recording() { return "/card/1.MP4"; }
    static double length() { return 10; }
    bool waitFor(const std::function<bool()>& condition) {
        controls_.finishOpening(length());
        return condition();
    }

  private:
    fakes::FakePlayerControls controls_;
    fakes::FakePlayerSettings settings_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PlayerControlsSuite, FakeStage);

} // namespace
} // namespace velmorant
