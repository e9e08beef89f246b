// SPDX-License-Identifier: LGPL-2.1-or-later
#include "recorder.h"

class Special : public Recorder
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid FILE "special.json")

public:
    Special() : Recorder("special", nullptr) { }
};

#include "special.moc"
