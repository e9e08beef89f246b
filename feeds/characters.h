// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHARACTERS_H
#define TIDEL_CHARACTERS_H

namespace Tidel {

/// Returns true if XML forbids the control character \a c; otherwise returns false.
constexpr bool isForbiddenInXml(char c)
{
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Returns true if \a c stands for itself in every text of an XML document; otherwise returns false.
constexpr bool isPlainInXml(char c)
{
    return !isForbiddenInXml(c) && c != '&' && c != '<' && c != '>' && c != '"';
}

/// Returns true if \a code is the number of a character that XML allows; otherwise returns false.
constexpr bool isCodePointOfXml(unsigned long code)
{
    return code == 0x9 || code == 0xa || code == 0xd || (code >= 0x20 && code <= 0xd7ff)
        || (code >= 0xe000 && code <= 0xfffd) || (code >= 0x10000 && code <= 0x10ffff);
}

} // namespace Tidel

#endif
