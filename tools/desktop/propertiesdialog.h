// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_PROPERTIESDIALOG_H
#define TIDEL_DESKTOP_PROPERTIESDIALOG_H

#include <TidelReader/error.h>
#include <TidelReader/retentionrule.h>
#include <TidelReader/store.h>

#include <QDialog>

#include <feedchannel.h>

QT_FORWARD_DECLARE_CLASS(QCheckBox)
QT_FORWARD_DECLARE_CLASS(QComboBox)
QT_FORWARD_DECLARE_CLASS(QSpinBox)

namespace Tidel {

/// What the properties of a channel are.
struct ChannelProperties
{
    FeedChannel channel;
    QString website; ///< Its address; empty if there is none.
    QString error; ///< Why the last refresh failed; empty if it did not.
    int interval = 0; ///< As Channels::setInterval() takes it.
    std::optional<RetentionRule> rule; ///< Nothing if it has none of its own.

    /// Reads the properties of the channel \a uri.
    static Result<ChannelProperties> of(const Store &store, const QString &uri);
    /// Stores the interval and the rule.
    Result<void> save(const Store &store) const;
};

/// Shows the properties of a channel, and lets the user change how often it is refreshed and what is kept.
class PropertiesDialog : public QDialog
{
    Q_OBJECT

public:
    PropertiesDialog(const ChannelProperties &properties, QWidget *parent = nullptr);

    /// The properties as the user wants them.
    ChannelProperties properties() const;

private:
    void addFacts();
    void addWishes();

    const ChannelProperties m_properties;
    QComboBox *const m_interval;
    QSpinBox *const m_keep;
    QSpinBox *const m_days;
    QCheckBox *const m_dropsUnread;
};

} // namespace Tidel

#endif
