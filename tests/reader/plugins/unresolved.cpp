// SPDX-License-Identifier: LGPL-2.1-or-later
// It needs what is nowhere.
#include <feedplugininterface.h>

void thisIsNowhere();

class Unresolved : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid)

public:
    Unresolved() { thisIsNowhere(); }
};

#include "unresolved.moc"
