#pragma once

#include <optional>
#include <string_view>

namespace velmorant {

/// A text of the program's own additions, UTF-8. "%1" stands for what the caller fills in.
struct AdditionTexts {
    std::string_view english;
    std::string_view traditionalChinese;
};

/// The texts of a name, for example "list.notExtracted"; absent when the table has no such row.
std::optional<AdditionTexts> additionTexts(std::string_view name);

} // namespace velmorant
