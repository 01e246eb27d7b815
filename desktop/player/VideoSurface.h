#pragma once

#include "desktop/player/MpvPlayer.h"

#include <QWidget>

namespace velmorant {

/// The widget that libmpv draws into; VideoWidget owns it and catches its mouse and keys.
class VideoSurface {
  public:
    virtual ~VideoSurface() = default;
    virtual QWidget& widget() = 0;
    virtual void hold() = 0;  ///< keeps the present picture until show()
    virtual void show() = 0;  ///< the pictures of the file that is open, the present one at once
    virtual void clear() = 0; ///< black until show()
    /// Whether a picture can come to be drawn while the widget is hidden.
    virtual bool drawsUnseen() const = 0;
};

} // namespace velmorant
