// SPDX-License-Identifier: LGPL-2.1-or-later
// It does not get as far as to be there.
#include <feedplugininterface.h>

#include <stdexcept>

class Throws : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid)

public:
    Throws() { throw std::runtime_error("not today"); }
};

#include "throws.moc"
