#pragma once

#include "common/StepError.h"
#include "ports/Screen.h"

#include <string>
#include <vector>

namespace velmorant::fakes {

/// 1024 x 708 pixels until the test says otherwise; as on some screens, they are not square.
class FakeScreen : public Screen {
  public:
    int width() const override { return pixelWidth * twipsX; }
    int height() const override { return pixelHeight * twipsY; }
    int twipsPerPixelX() const override { return twipsX; }
    int twipsPerPixelY() const override { return twipsY; }

    int pixelWidth = 1024;
    int pixelHeight = 708;
    int twipsX = 12;
    int twipsY = 15;
};

class FakeScreenCapture : public ScreenCapture {
  public:
    void capture(const PixelRectangle& area) override {
        if (captureFails)
            throw StepError("nothing could be copied from the screen");
        captured.push_back(area);
    }
    void savePicture(const std::string& path) override {
        if (saveFails)
            throw StepError(path + ": no space left on device");
        saved.push_back(path);
    }

    bool captureFails = false;
    bool saveFails = false;
    std::vector<PixelRectangle> captured;
    std::vector<std::string> saved;
};

} // namespace velmorant::fakes
