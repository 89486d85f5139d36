// SPDX-License-Identifier: MIT
#include "scores/CodePage.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace glimmerfall {

namespace {

// The characters of the bytes 0x80 to 0x9F. All other bytes are the character of their number.
constexpr unsigned kHighFirst = 0x80;
constexpr std::array<char16_t, 32> kHighCharacters = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr unsigned kHighEnd = kHighFirst + kHighCharacters.size();
constexpr unsigned kBytes = 0x100;
constexpr char kUnknown = '?';

// UTF-8 (RFC 3629): a byte 10xxxxxx continues a character; the first byte tells how many do, and a
// character takes no more bytes than it needs.
constexpr std::array<char32_t, 5> kLeastOfLength = {0, 0, 0x80, 0x800, 0x10000};

constexpr bool Continues(unsigned char byte) {
  return (byte & 0xC0U) == 0x80U;
}

struct Character {
  char32_t code;
  std::size_t length;  // bytes
};

constexpr Character kBroken = {0xFFFD, 1};

// The character at the head of `text`, which is not empty.
Character Decode(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) return {first, 1};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return kBroken;
  char32_t code = first & (0xFFU >> (length + 1));
  for (const char next : text.substr(1, length - 1)) {
    const auto byte = static_cast<unsigned char>(next);
    if (!Continues(byte)) return kBroken;
    code = code << 6 | (byte & 0x3FU);
  }
  return code >= kLeastOfLength[length] ? Character{code, length} : kBroken;
}

char ByteOf(char32_t code) {
  if (code < kHighFirst || (code >= kHighEnd && code < kBytes)) return static_cast<char>(code);
  const auto* const place = std::find(kHighCharacters.begin(), kHighCharacters.end(), code);
  if (place == kHighCharacters.end()) return kUnknown;
  return static_cast<char>(kHighFirst + static_cast<unsigned>(place - kHighCharacters.begin()));
}

// No character of the code page lies beyond the three-byte ones.
void AppendUtf8(char32_t code, std::string& text) {
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    append(code);
  } else if (code < 0x800) {
    append(0xC0 | code >> 6);
    append(0x80 | (code & 0x3F));
  } else {
    append(0xE0 | code >> 12);
    append(0x80 | (code >> 6 & 0x3F));
    append(0x80 | (code & 0x3F));
  }
}

}  // namespace

std::string ToCodePage(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const Character character = Decode(text);
    bytes.push_back(ByteOf(character.code));
    text.remove_prefix(character.length);
  }
  return bytes;
}

std::string FromCodePage(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const unsigned code = static_cast<unsigned char>(byte);
    const bool high = code >= kHighFirst && code < kHighEnd;
    AppendUtf8(high ? kHighCharacters[code - kHighFirst] : static_cast<char32_t>(code), text);
  }
  return text;
}

std::string FirstCharacters(std::string_view text, int count) {
  std::size_t length = 0;
  for (; count > 0 && length < text.size(); --count)
    length += Decode(text.substr(length)).length;
  return std::string(text.substr(0, length));
}

}  // namespace glimmerfall
