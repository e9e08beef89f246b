// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedenclosure.h"
#include "feedenclosure_p.h"

#include <QDebug>

FeedEnclosure::FeedEnclosure() : d(new FeedEnclosurePrivate) { }

FeedEnclosure::FeedEnclosure(const QString &uri, const QString &remoteUrl, const QString &localUrl,
                             const QString &sourceNamespace, unsigned int length, FeedEnclosure::Type type,
                             unsigned int groupId, bool isDefault)
    : d(new FeedEnclosurePrivate)
{
    d->uri = uri;
    d->remoteUrl = remoteUrl;
    d->localUrl = localUrl;
    d->sourceNamespace = sourceNamespace;
    d->length = length;
    d->type = type;
    d->groupId = groupId;
    d->isDefault = isDefault;
}

FeedEnclosure::FeedEnclosure(const FeedEnclosure &other) = default;

FeedEnclosure &FeedEnclosure::operator=(const FeedEnclosure &other) = default;

FeedEnclosure::~FeedEnclosure() = default;

bool FeedEnclosure::operator==(const FeedEnclosure &other) { return d->remoteUrl == other.d->remoteUrl; }

QString FeedEnclosure::uri() const { return d->uri; }

QString FeedEnclosure::remoteUrl() const { return d->remoteUrl; }

QString FeedEnclosure::localUrl() const { return d->localUrl; }

QString FeedEnclosure::sourceNamespace() const { return d->sourceNamespace; }

unsigned int FeedEnclosure::length() const { return d->length; }

FeedEnclosure::Type FeedEnclosure::type() const { return d->type; }

unsigned int FeedEnclosure::groupId() const { return d->groupId; }

bool FeedEnclosure::isDefault() const { return d->isDefault; }

QString FeedEnclosure::mimeType() const { return d->mimeType; }

QString FeedEnclosure::typeIcon() const { return d->typeIcon; }

void FeedEnclosure::setUri(const QString &uri)
{
    detach();
    d->uri = uri;
}

void FeedEnclosure::setRemoteUrl(const QString &remoteUrl)
{
    detach();
    d->remoteUrl = remoteUrl;
}

void FeedEnclosure::setLocalUrl(const QString &localUrl)
{
    detach();
    d->localUrl = localUrl;
}

void FeedEnclosure::setsourceNamespace(const QString &sourceNamespace)
{
    detach();
    d->sourceNamespace = sourceNamespace;
}

void FeedEnclosure::setLength(unsigned int length)
{
    detach();
    d->length = length;
}

void FeedEnclosure::setType(FeedEnclosure::Type type)
{
    detach();
    d->type = type;
}

void FeedEnclosure::setGroupId(unsigned int groupId)
{
    detach();
    d->groupId = groupId;
}

void FeedEnclosure::setDefault(bool isDefault)
{
    detach();
    d->isDefault = isDefault;
}

void FeedEnclosure::setMimeType(const QString &mimeType)
{
    detach();
    d->mimeType = mimeType;
}

void FeedEnclosure::setTypeIcon(const QString &typeIcon)
{
    detach();
    d->typeIcon = typeIcon;
}

void FeedEnclosure::detach() { d.detach(); }

void FeedEnclosure::addChild(FeedNode *node) { Q_UNUSED(node) }

// contract: the labels and blanks are uneven. Log readers compare the text.
QDebug operator<<(QDebug debug, const FeedEnclosure &enclosure)
{
    debug << "\nEnclosure : ";
    debug << "\n Source Namespace : " << enclosure.sourceNamespace();
    debug << "\n uri: " << enclosure.uri();
    debug << "\n         Remote Url: " << enclosure.remoteUrl();
    debug << "\n         Local Url:" << enclosure.localUrl();
    debug << "\n         Length: " << enclosure.length();
    if (enclosure.type() == FeedEnclosure::Essential)
        debug << "\n         Type: Essential";
    else
        debug << "\n         Type: Optional";
    debug << "\n         Group Id:" << enclosure.groupId();
    debug << "\n     Default :" << enclosure.isDefault();
    debug << "\n     mimeType:" << enclosure.mimeType();
    debug << "\n      typeIcon:" << enclosure.typeIcon();
    return debug;
}
