// SPDX-License-Identifier: LGPL-2.1-or-later
#include "propertiesdialog.h"

#include <TidelReader/channels.h>
#include <TidelReader/feeds.h>
#include <TidelReader/retentionrules.h>
#include <TidelReader/usertext.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QSpinBox>

namespace Tidel {

namespace {

struct Interval
{
    int seconds;
    const char *text;
};

const Interval intervals[] = {
    {0, QT_TRANSLATE_NOOP("Tidel::PropertiesDialog", "As its server wishes")},
    {15 * 60, QT_TRANSLATE_NOOP("Tidel::PropertiesDialog", "Every 15 minutes at most")},
    {60 * 60, QT_TRANSLATE_NOOP("Tidel::PropertiesDialog", "Hourly at most")},
    {6 * 60 * 60, QT_TRANSLATE_NOOP("Tidel::PropertiesDialog", "Every 6 hours at most")},
    {24 * 60 * 60, QT_TRANSLATE_NOOP("Tidel::PropertiesDialog", "Daily at most")},
    {7 * 24 * 60 * 60, QT_TRANSLATE_NOOP("Tidel::PropertiesDialog", "Weekly at most")},
};

QLabel *factLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

/// A line for an address, which may be longer than the dialog is wide.
QLineEdit *addressLine(const QString &address)
{
    auto *line = new QLineEdit(withoutPasswords(address));
    line->setReadOnly(true);
    line->setCursorPosition(0);
    return line;
}

/// The number of \a box; nothing if it shows the text for none.
std::optional<int> numberOf(const QSpinBox *box)
{
    return box->value() == box->minimum() ? std::nullopt : std::optional<int>(box->value());
}

} // namespace

Result<ChannelProperties> ChannelProperties::of(const Store &store, const QString &uri)
{
    ChannelProperties properties;
    const Result<void> isRead =
        Channels(store)
            .all()
            .and_then([&](const QList<FeedChannel> &channels) { return Channels::find(channels, uri); })
            .map([&](const FeedChannel &channel) { properties.channel = channel; })
            .and_then([&] { return Channels(store).details({uri}); })
            .map([&](const QHash<QString, ChannelDetails> &details) {
                properties.website = details.value(uri).website.toString();
            })
            .and_then([&] { return Feeds(store).plan(uri); })
            .map([&](const FeedPlan &plan) {
                properties.error = plan.notes.error;
                properties.interval = plan.interval;
            })
            .and_then([&] { return RetentionRules(store).all(); })
            .map([&](const QHash<QString, RetentionRule> &rules) {
                if (rules.contains(uri))
                    properties.rule = rules.value(uri);
            });
    if (!isRead)
        return Failure(isRead.error());
    return properties;
}

Result<void> ChannelProperties::save(const Store &store) const
{
    return Channels(store).setInterval(channel.uri(), interval).and_then([&] {
        return RetentionRules(store).set(channel.uri(), rule);
    });
}

PropertiesDialog::PropertiesDialog(const ChannelProperties &properties, QWidget *parent)
    : QDialog(parent), m_properties(properties), m_interval(new QComboBox(this)), m_keep(new QSpinBox(this)),
      m_days(new QSpinBox(this)), m_dropsUnread(new QCheckBox(tr("Unread ones, too"), this))
{
    setWindowTitle(tr("Properties of %1").arg(properties.channel.title()));
    auto *layout = new QFormLayout(this);
    layout->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    addFacts();
    addWishes();
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    setMinimumWidth(fontMetrics().averageCharWidth() * 70);
}

void PropertiesDialog::addFacts()
{
    auto *form = static_cast<QFormLayout *>(layout());
    const QDateTime updated = m_properties.channel.updatedTime();
    form->addRow(tr("Title:"), factLabel(m_properties.channel.title()));
    form->addRow(tr("Address:"), addressLine(m_properties.channel.link()));
    if (!m_properties.website.isEmpty())
        form->addRow(tr("Website:"), addressLine(m_properties.website));
    if (updated.isValid())
        form->addRow(tr("Last change:"), factLabel(QLocale().toString(updated.toLocalTime())));
    form->addRow(tr("Last refresh:"),
                 factLabel(m_properties.error.isEmpty() ? tr("without errors") : m_properties.error));
}

void PropertiesDialog::addWishes()
{
    auto *form = static_cast<QFormLayout *>(layout());
    for (const Interval &interval : intervals)
        m_interval->addItem(tr(interval.text), interval.seconds);
    if (m_interval->findData(m_properties.interval) < 0)
        m_interval->addItem(tr("Every %n second(s) at most", nullptr, m_properties.interval),
                            m_properties.interval);
    m_interval->setCurrentIndex(m_interval->findData(m_properties.interval));
    form->addRow(tr("&Refresh:"), m_interval);
    const RetentionRule rule = m_properties.rule.value_or(RetentionRule());
    const auto addLimit = [form](const QString &name, QSpinBox *box, std::optional<int> value) {
        box->setRange(0, 1000000);
        box->setSpecialValueText(tr("All"));
        box->setValue(value.value_or(0));
        form->addRow(name, box);
    };
    addLimit(tr("&Newest messages to keep:"), m_keep, rule.keep);
    addLimit(tr("&Days to keep messages:"), m_days, rule.days);
    m_dropsUnread->setChecked(rule.dropsUnread);
    form->addRow(tr("Delete older ones:"), m_dropsUnread);
}

ChannelProperties PropertiesDialog::properties() const
{
    ChannelProperties wanted = m_properties;
    wanted.interval = m_interval->currentData().toInt();
    RetentionRule rule;
    rule.keep = numberOf(m_keep);
    rule.days = numberOf(m_days);
    rule.dropsUnread = m_dropsUnread->isChecked();
    // A rule without limits keeps all messages, whatever the rule of all channels says.
    const bool hasLimits = rule.keep || rule.days;
    const bool hadLimits = m_properties.rule && (m_properties.rule->keep || m_properties.rule->days);
    if (hasLimits || hadLimits)
        wanted.rule = hasLimits ? std::optional<RetentionRule>(rule) : std::nullopt;
    return wanted;
}

} // namespace Tidel
