#pragma once

#include "common/textRules.h"

#include <string>
#include <utility>

namespace velmorant::fakes {

/// Orders names as where case does not matter: "Unit" is "UNIT".
struct IgnoringCase {
    bool operator()(const std::string& left, const std::string& right) const {
        return lowerCase(left) < lowerCase(right);
    }
    bool operator()(const std::pair<std::string, std::string>& left,
                    const std::pair<std::string, std::string>& right) const {
        return left.first != right.first ? left.first < right.first
                                         : (*this)(left.second, right.second);
    }
};

} // namespace velmorant::fakes
