#pragma once

namespace velmorant {

/// What a player tells the widget that shows its picture.
class PictureListener {
  public:
    virtual ~PictureListener() = default;
    /// Another file opens: what is seen, a picture or the background, stays until showPicture(), so
    /// that nothing flickers.
    virtual void holdPicture() = 0;
    virtual void showPicture() = 0;  ///< the opened file's first one can be drawn
    virtual void clearPicture() = 0; ///< no file: the background, on the full screen black
};

class MpvPlayer;

/// Holds a player and its widget together, whichever of them ends first: each clears its own side.
struct PictureLink {
    MpvPlayer* player = nullptr;
    PictureListener* picture = nullptr;
};

} // namespace velmorant
