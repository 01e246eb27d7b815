#pragma once

#include "playback/frmCurve.h"
#include "ports/KeyPress.h"
#include "ports/MediaPlayer.h"

#include <string>
#include <vector>

namespace velmorant {

/// The keys of the player, in one table that gives the tool tips their keys too:
///   Space, K  play and pause      Left, Right  5 s (with Shift 1 s)    ",", "."  one picture
///   Up, Down  volume              M  mute      N, P  next, previous    1 to 5  the rates
///   F  full screen                Esc  back    S  save the picture
class PlayerKeys {
  public:
    /// Both must outlive it.
    PlayerKeys(frmCurve& bar, PlayerView& picture) : m_bar(bar), m_picture(picture) {}

    static std::vector<std::string> keys(); ///< those that use() knows, each once

    /// A key of no use to the player does nothing.
    void use(const KeyPress& press);

    /// An element of the control bar's skin and the keys that its tool tip names.
    struct ElementKeys {
        std::string element;
        std::string keys;
    };
    static std::vector<ElementKeys> elementKeys();

  private:
    frmCurve& m_bar;
    PlayerView& m_picture;
};

} // namespace velmorant
