#pragma once

#include "ports/Screen.h"
#include <QImage>

namespace velmorant {

/// Copies from the primary screen. On a dense screen the copy has the screen's own pixels.
class QtScreenCapture : public ScreenCapture {
  public:
    void capture(const PixelRectangle& area) override;
    void savePicture(const std::string& path) override;

  private:
    QImage m_picture;
};

} // namespace velmorant
