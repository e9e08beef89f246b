// SPDX-License-Identifier: LGPL-2.1-or-later
#include "itemdigest.h"

#include <QCryptographicHash>

namespace Tidel {

namespace {

// Three quarters of a character each. With 72 bits two items never have the same digest by chance.
constexpr int hashBytes = itemDigestSize * 3 / 4;

/// A hash of what is said. Sizes stand before texts, so that different elements never say the same.
class Hash
{
public:
    void add(std::string_view text)
    {
        addBytes(std::to_string(text.size()) + ':');
        addBytes(text);
    }
    void add(const QString &text)
    {
        const QByteArray utf8 = text.toUtf8();
        add(std::string_view(utf8.constData(), size_t(utf8.size())));
    }
    void add(const Element &element)
    {
        addBytes(std::string{char(element.vocabulary),
                             char('0' + 2 * int(element.isAtom) + int(element.hasMarkup))});
        add(element.name);
        add(element.text);
        add(element.base);
        add(element.language);
        addBytes(std::to_string(element.attributes.size()) + ':');
        for (const Attribute &attribute : element.attributes) {
            add(attribute.name);
            add(attribute.value);
        }
        addBytes(std::to_string(element.children.size()) + ':');
        for (const Element &child : element.children)
            add(child);
    }
    QByteArray result() const { return m_hash.result(); }

private:
    // An item can be too large to be copied.
    void addBytes(std::string_view bytes)
    {
        m_hash.addData(QByteArray::fromRawData(bytes.data(), int(bytes.size())));
    }

    QCryptographicHash m_hash{QCryptographicHash::Sha1};
};

} // namespace

QByteArray itemDigest(const Element &item)
{
    Hash hash;
    hash.add(item);
    return hash.result().left(hashBytes).toBase64();
}

} // namespace Tidel
