// SPDX-License-Identifier: MIT
// The 8-bit text of the name files: Windows-1252, as published by the Unicode Consortium
// (MAPPINGS/VENDORS/MICSFT/WindowsBestFit/bestfit1252.txt). Strings inside the program are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace glimmerfall {

/// `text` in the code page, one byte a character. A character outside the code page becomes '?', as
/// does each byte that is no UTF-8.
std::string ToCodePage(std::string_view text);

/// `bytes` as UTF-8. Every byte has a character of its own, so that reading and writing again gives
/// the same bytes: the five that the code page leaves open are the control characters of the same
/// number.
std::string FromCodePage(std::string_view bytes);

/// The first `count` characters of `text`, or all of them.
std::string FirstCharacters(std::string_view text, int count);

}  // namespace glimmerfall
