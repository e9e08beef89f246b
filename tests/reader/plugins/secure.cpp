// SPDX-License-Identifier: LGPL-2.1-or-later
#include "recorder.h"

class Secure : public Recorder
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid FILE "secure.json")

public:
    Secure() : Recorder("secure", nullptr) { }
};

#include "secure.moc"
