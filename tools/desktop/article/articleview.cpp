// SPDX-License-Identifier: LGPL-2.1-or-later
#include "articleview.h"

#include "articlebrowser.h"
#include "articlehtml.h"
#include "picturebar.h"
#include "weblinks.h"

#include <TidelReader/safehtml.h>

#include <QAction>
#include <QScrollBar>
#include <QVBoxLayout>

namespace Tidel {

namespace {

QUrl baseOf(const ShownMessage &shown)
{
    return shown.details.baseUrl.isEmpty() ? QUrl(shown.message.link()) : shown.details.baseUrl;
}

QString textOf(const FeedMessage &message)
{
    return message.description().isEmpty() ? message.summary() : message.description();
}

SafeHtml safeText(const ShownMessage &shown, bool isAllowed)
{
    return SafeHtml::fromHtml(textOf(shown.message), baseOf(shown),
                              isAllowed ? SafeHtml::ShownPictures : SafeHtml::LinkedPictures);
}

QString articleHtml(const ShownMessage &shown, const SafeHtml &text)
{
    return headHtml(shown) + QStringLiteral("<div>") + text.html + QStringLiteral("</div>")
        + enclosuresHtml(shown);
}

} // namespace

ArticleView::ArticleView(QWidget *parent)
    : QWidget(parent), m_browser(new ArticleBrowser(this)), m_pictureBar(new PictureBar(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_pictureBar);
    layout->addWidget(m_browser);
    m_pictureBar->hide();
    m_browser->setAccessibleName(tr("Article"));
    setFocusProxy(m_browser);
    addActions();

    connect(m_pictureBar, &PictureBar::allowedOnce, this, &ArticleView::allowOnce);
    connect(m_pictureBar, &PictureBar::allowedForChannel, this, [this] { setAllowedForChannel(true); });
    connect(m_browser, &ArticleBrowser::anchorClicked, this, &ArticleView::activate);
    connect(m_browser, qOverload<const QUrl &>(&ArticleBrowser::highlighted), this,
            [this](const QUrl &link) { Q_EMIT linkHovered(mayFollow(link) ? link : QUrl()); });
    connect(m_browser, &ArticleBrowser::endReached, this, &ArticleView::endReached);
    connect(m_browser, &ArticleBrowser::colorsChanged, this, &ArticleView::render);
}

void ArticleView::addActions()
{
    addZoom(tr("&Larger Text"), QKeySequence::keyBindings(QKeySequence::ZoomIn) << QKeySequence(tr("Ctrl+=")),
            1);
    addZoom(tr("&Smaller Text"), QKeySequence::keyBindings(QKeySequence::ZoomOut), -1);
    addZoom(tr("&Usual Size of Text"), {QKeySequence(tr("Ctrl+0"))}, 0);
    m_channelPictures = new QAction(tr("Show &Pictures of This Channel"), this);
    m_channelPictures->setCheckable(true);
    m_channelPictures->setEnabled(false);
    connect(m_channelPictures, &QAction::triggered, this, &ArticleView::setAllowedForChannel);
    addAction(m_channelPictures);
}

void ArticleView::addZoom(const QString &text, const QList<QKeySequence> &keys, int points)
{
    auto *action = new QAction(text, this);
    action->setShortcuts(keys);
    connect(action, &QAction::triggered, this,
            [this, points] { m_browser->setZoom(points == 0 ? 0 : m_browser->zoom() + points); });
    addAction(action);
}

void ArticleView::show(const ShownMessage &message)
{
    const bool isSame = message.uri == m_shown.uri;
    m_shown = message;
    const int place = m_browser->verticalScrollBar()->value();
    render();
    m_browser->verticalScrollBar()->setValue(isSame ? place : 0);
}

void ArticleView::rehearse(ShownMessage message) const
{
    // Nobody should wait for a long text.
    constexpr int longest = 5000;
    message.message.setDescription(textOf(message.message).left(longest));
    m_browser->rehearse(articleHtml(message, safeText(message, false)));
}

void ArticleView::clear() { show(ShownMessage()); }

bool ArticleView::readOn() { return m_browser->readOn(); }

void ArticleView::render()
{
    const bool isAllowed = m_permissions.isAllowed(m_shown.uri, m_shown.channelUri);
    m_channelPictures->setEnabled(!m_shown.channelUri.isEmpty());
    m_channelPictures->setChecked(m_permissions.isAllowedForChannel(m_shown.channelUri));
    m_browser->setAccessibleDescription(m_shown.message.title());
    if (m_shown.uri.isEmpty()) {
        m_pictureBar->hide();
        m_browser->display(QString(), {});
        return;
    }
    const SafeHtml text = safeText(m_shown, isAllowed);
    m_pictureBar->setVisible(!isAllowed && !text.pictures.isEmpty());
    m_browser->display(articleHtml(m_shown, text), isAllowed ? text.pictures : QStringList());
}

void ArticleView::activate(const QUrl &link)
{
    const int index = enclosureOf(link);
    if (link == SafeHtml::picturesAddress())
        allowOnce();
    else if (index >= 0 && index < m_shown.enclosures.size() && link.scheme() == openScheme)
        Q_EMIT openRequested(m_shown.enclosures.at(index).uri());
    else if (index >= 0 && index < m_shown.enclosures.size())
        Q_EMIT downloadRequested(m_shown.enclosures.at(index).uri());
    else if (mayFollow(link))
        Q_EMIT linkActivated(link);
}

void ArticleView::allowOnce()
{
    m_permissions.allowOnce(m_shown.uri);
    show(ShownMessage(m_shown));
    m_browser->setFocus();
}

void ArticleView::setAllowedForChannel(bool isAllowed)
{
    m_permissions.setAllowedForChannel(m_shown.channelUri, isAllowed);
    show(ShownMessage(m_shown));
    m_browser->setFocus();
}

} // namespace Tidel
