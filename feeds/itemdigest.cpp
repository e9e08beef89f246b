// SPDX-License-Identifier: LGPL-2.1-or-later
#include "itemdigest.h"

#include <QCryptographicHash>

namespace Tidel {

namespace {

// Three quarters of a character each. With 72 bits two items never have the same digest by chance.
constexpr int hashBytes = itemDigestSize * 3 / 4;

void append(std::string &target, std::string_view text)
{
    target.append(std::to_string(text.size())).append(1, ':').append(text);
}

void append(std::string &target, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    append(target, std::string_view(utf8.constData(), size_t(utf8.size())));
}

// Sizes stand before texts, so that different elements never give the same text.
void append(std::string &target, const Element &element)
{
    target += char(element.vocabulary);
    target += char('0' + 2 * int(element.isAtom) + int(element.hasMarkup));
    append(target, element.name);
    append(target, element.text);
    append(target, element.base);
    append(target, element.language);
    append(target, std::to_string(element.attributes.size()));
    for (const Attribute &attribute : element.attributes) {
        append(target, attribute.name);
        append(target, attribute.value);
    }
    append(target, std::to_string(element.children.size()));
    for (const Element &child : element.children)
        append(target, child);
}

} // namespace

QByteArray itemDigest(const Element &item)
{
    std::string said;
    append(said, item);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray::fromRawData(said.data(), int(said.size())));
    return hash.result().left(hashBytes).toBase64();
}

} // namespace Tidel
