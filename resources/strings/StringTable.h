#pragma once

#include <optional>
#include <string_view>

namespace velmorant {

/// The string table compiled into the program, UTF-8.
///
/// Ids below 10000 do not depend on the language. The others are 10000 times the language's index
/// (1 English, 2 traditional Chinese) plus an offset; both languages have the same offsets. The row
/// 1000 of a language, and 2000, count the rows behind them. Id 1 is the server's base address,
/// set at build time.
///
/// Absent when the table has no such row.
std::optional<std::string_view> stringTableText(int id);

} // namespace velmorant
