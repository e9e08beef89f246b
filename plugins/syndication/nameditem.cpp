// SPDX-License-Identifier: LGPL-2.1-or-later
#include "nameditem.h"

#include <QCryptographicHash>

#include <algorithm>

namespace Tidel {

namespace {

QString hashOf(const ItemRecord &item)
{
    const QDateTime date = item.published.isValid() ? item.published : item.updated;
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const auto add = [&](const QString &text) { hash.addData((text + QLatin1Char('\n')).toUtf8()); };
    for (const QString &text :
         {item.title, item.link.text, item.text, item.summary, date.toString(Qt::ISODate)})
        add(text);
    for (const FileRecord &file : item.files)
        add(file.address.text);
    return QLatin1String("hash:") + QString::fromLatin1(hash.result().toHex());
}

} // namespace

NamedItem::NamedItem(ItemRecord &&item)
    : record(std::move(item)), id(record.id.isEmpty() ? hashOf(record) : record.id)
{
}

bool NamedItem::isSameAs(const NamedItem &other) const
{
    return id == other.id && record.title == other.record.title
        && std::equal(
               record.files.begin(), record.files.end(), other.record.files.begin(), other.record.files.end(),
               [](const FileRecord &a, const FileRecord &b) { return a.address.text == b.address.text; });
}

QString NamedItem::variant() const
{
    QString text = record.title;
    for (const FileRecord &file : record.files)
        text += QLatin1Char('\n') + file.address.text;
    return text;
}

} // namespace Tidel
