// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qmlarchive.h"

#include <TidelReader/channelmodel.h>
#include <TidelReader/messagemodel.h>

#include <QQmlExtensionPlugin>
#include <qqml.h>

namespace Tidel {

/// The QML module Tidel.
class QmlPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char *uri) override
    {
        // The type of the property of the models, which takes archives of C++ too.
        qmlRegisterAnonymousType<Archive>(uri, 1);
        qmlRegisterType<QmlArchive>(uri, 1, 0, "Archive");
        qmlRegisterType<ChannelModel>(uri, 1, 0, "ChannelModel");
        qmlRegisterType<MessageModel>(uri, 1, 0, "MessageModel");
    }
};

} // namespace Tidel

#include "qmlplugin.moc"
