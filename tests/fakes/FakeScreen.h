#pragma once

#include "common/StepError.h"
#include "ports/Screen.h"

#include <string>
#include <vector>

namespace velmorant::fakes {

/// 1024 x 708 pixels at 96 dots per inch until the test says otherwise.
class FakeScreen : public Screen {
  public:
    int width() const override { return pixelWidth * twips; }
    int height() const override { return pixelHeight * twips; }
    int twipsPerPixelX() const override { return twips; }
    int twipsPerPixelY() const override { return twips; }

    int pixelWidth = 1024;
    int pixelHeight = 708;
    int twips = 15;
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
