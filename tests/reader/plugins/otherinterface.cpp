// SPDX-License-Identifier: LGPL-2.1-or-later
// A plug-in for another host.
#include <feedplugininterface.h>

class OtherInterface : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.Other/1.0")
};

#include "otherinterface.moc"
