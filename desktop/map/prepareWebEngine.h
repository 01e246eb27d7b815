#pragma once

namespace velmorant {

/// The scheme and host of the page that the program serves itself: velmorant://map/DeskMap.asp
inline constexpr char mapScheme[] = "velmorant";
inline constexpr char mapHost[] = "map";

/// Whether anything in the program is drawn by OpenGL. The page is not.
enum class OpenGlUse { None, Picture };

/// Call once, before the application object and before any thread: registers the scheme and sets
/// the variables that Qt WebEngine reads or sets at its start. Variables that are already set are
/// kept. Nothing else in the program changes the environment: threads may be reading it.
void prepareWebEngine(OpenGlUse use = OpenGlUse::None);

} // namespace velmorant
