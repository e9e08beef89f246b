// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLNAMES_H
#define TIDEL_XMLNAMES_H

#include <algorithm>
#include <string_view>

namespace Tidel {

/// \name Characters of a document
/// @{
inline bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// Returns true if \a c may begin the name of an element in a damaged document; otherwise returns false.
inline bool startsName(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }

inline bool continuesName(char c)
{
    const bool isDigit = c >= '0' && c <= '9';
    return startsName(c) || isDigit || c == '-' || c == '.' || c == ':'
        || static_cast<unsigned char>(c) >= 0x80;
}
/// @}

/// The characters at the beginning of \a text for which \a belongs is true.
inline std::string_view leading(std::string_view text, bool (*belongs)(char))
{
    const auto end = std::find_if_not(text.begin(), text.end(), belongs);
    return text.substr(0, size_t(end - text.begin()));
}

} // namespace Tidel

#endif
