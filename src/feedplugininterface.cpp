// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedplugininterface.h"

namespace {

// contract: "0.1", although the IID says 1.0. Hosts compare this text.
const QString interfaceVersion = QStringLiteral("0.1");

} // namespace

FeedPluginInterface::FeedPluginInterface(QObject *parent) : QObject(parent) { }

FeedPluginInterface::~FeedPluginInterface() = default;

QString FeedPluginInterface::version() const { return interfaceVersion; }
