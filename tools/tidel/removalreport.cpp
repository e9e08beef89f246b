// SPDX-License-Identifier: LGPL-2.1-or-later
#include "removalreport.h"

#include "output.h"

#include <TidelReader/downloadfolder.h>

namespace Tidel {

RemovalStep RemovalReport::step()
{
    return [this](int messages, const QList<FeedEnclosure> &enclosures) {
        m_messages += messages;
        m_enclosures += int(enclosures.size());
        QStringList failed;
        m_files += DownloadFolder::removeFiles(enclosures, &failed);
        for (const QString &path : qAsConst(failed))
            m_output.error(QStringLiteral("%1: could not remove the file; remove it yourself").arg(path));
    };
}

QJsonObject RemovalReport::json(QJsonObject object) const
{
    object.insert(QStringLiteral("deletedMessages"), m_messages);
    object.insert(QStringLiteral("deletedEnclosures"), m_enclosures);
    object.insert(QStringLiteral("deletedFiles"), m_files);
    return object;
}

} // namespace Tidel
