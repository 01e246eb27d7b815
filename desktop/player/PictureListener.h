#pragma once

namespace velmorant {

/// What the widget that shows the picture is told by its player.
class PictureListener {
  public:
    virtual ~PictureListener() = default;
    /// Another file opens: the present picture stays until showPicture(), so that nothing flashes.
    virtual void holdPicture() = 0;
    virtual void showPicture() = 0;
    virtual void clearPicture() = 0; ///< no file: black
};

class MpvPlayer;

/// Holds a player and its widget together, whichever of them ends first: each clears its own side.
struct PictureLink {
    MpvPlayer* player = nullptr;
    PictureListener* picture = nullptr;
};

} // namespace velmorant
