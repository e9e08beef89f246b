// SPDX-License-Identifier: LGPL-2.1-or-later
// It says that it downloads feeds, and has nothing to do it with.
#include <feedplugininterface.h>

class NotADownloader : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid)
};

#include "notadownloader.moc"
