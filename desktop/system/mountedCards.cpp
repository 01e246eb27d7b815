#include "desktop/system/mountedCards.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace velmorant {

namespace {

bool isOctal(char digit) {
    return digit >= '0' && digit <= '7';
}

std::string unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escape = text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) &&
                            isOctal(text[i + 2]) && isOctal(text[i + 3]);
        if (!escape) {
            plain += text[i];
            continue;
        }
        plain += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 +
                                   (text[i + 3] - '0'));
        i += 3;
    }
    return plain;
}

} // namespace

bool isCardFolder(const std::string& folder) {
    return folder.starts_with("/media/") || folder.starts_with("/run/media/");
}

std::vector<std::string> mountedCards(std::istream& table) {
    std::vector<std::string> cards;
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string device;
        std::string folder;
        fields >> device >> folder;
        folder = unescaped(folder);
        if (isCardFolder(folder) && std::find(cards.begin(), cards.end(), folder) == cards.end())
            cards.push_back(folder);
    }
    return cards;
}

std::vector<std::string> mountedCards() {
    std::ifstream table("/proc/self/mounts");
    return mountedCards(table);
}

} // namespace velmorant
