#pragma once

#include <QColor>

class QApplication;

namespace velmorant {

/// The colours of the one dark theme; the skins use the same.
namespace palette {
inline const QColor frame{0x0B, 0x0F, 0x14};
inline const QColor card{0x12, 0x18, 0x21};
inline const QColor control{0x1C, 0x25, 0x30};
inline const QColor controlHover{0x2A, 0x37, 0x46};
inline const QColor controlPressed{0x0D, 0x13, 0x1A};
inline const QColor well{0x08, 0x0B, 0x10};
inline const QColor row{0x10, 0x17, 0x1F};
inline const QColor rule{0x26, 0x31, 0x3D};
inline const QColor text{0xEA, 0xF0, 0xF6};
inline const QColor secondText{0xA8, 0xB5, 0xC3};
inline const QColor disabledText{0x78, 0x85, 0x91};
inline const QColor outline{0x75, 0x86, 0x9A};
inline const QColor groove{0x5C, 0x6C, 0x7E};
inline const QColor accent{0x45, 0xC9, 0xD6};
inline const QColor accentHover{0x74, 0xDE, 0xE8};
inline const QColor onGround{0x11, 0x32, 0x3A};
inline const QColor textOnAccent{0x04, 0x19, 0x1E};
} // namespace palette

/// Gives message boxes, file dialogs, menus, tool tips and scroll bars the theme of the skins.
void applyTheme(QApplication& application);

} // namespace velmorant
