#pragma once

namespace velmorant {

/// The scheme and host of the page that the program serves itself: velmorant://map/DeskMap.asp
inline constexpr char mapScheme[] = "velmorant";
inline constexpr char mapHost[] = "map";

/// Whether anything in the program is drawn by OpenGL. The page is not.
enum class OpenGlUse { None, Picture };

/// Call once, before the application object: registers the scheme and sets what Qt WebEngine reads
/// at its start. What the environment already sets stays.
void prepareWebEngine(OpenGlUse use = OpenGlUse::None);

} // namespace velmorant
