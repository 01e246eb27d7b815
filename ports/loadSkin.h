#pragma once

#include "ports/FileSystem.h"
#include "ports/MessageBox.h"
#include "ports/Skin.h"
#include "ports/Texts.h"

#include <string>

namespace velmorant {

enum class SkinLoad { Loaded, Missing };

/// Loads a window's skin file and applies it. When the file does not exist, or is no drawing, the
/// box "System file is missing, please re-install the system" is shown; the window then closes.
inline SkinLoad loadSkin(Skin& skin, const std::string& path, const FileSystem& files,
                         const Texts& texts, MessageBox& messageBox) {
    constexpr int missingFile = 3012;
    constexpr int warningTitle = 3011;
    if (files.fileExists(path) && skin.load(path))
        return SkinLoad::Loaded;
    messageBox.show(texts.byOffset(missingFile), texts.byOffset(warningTitle), MessageStyle::Stop);
    return SkinLoad::Missing;
}

} // namespace velmorant
