#pragma once

#include "common/Language.h"

#include <array>
#include <optional>
#include <string_view>

namespace velmorant {

/// A text of the program's own additions, UTF-8, one for each language
/// in the order of their table.
/// "%1" stands for what the caller fills in.
using AdditionTexts = std::array<std::string_view, languages.size()>;

/// The texts of a name, for example "list.notExtracted"; absent when the table has no such row.
std::optional<AdditionTexts> additionTexts(std::string_view name);

} // namespace velmorant
