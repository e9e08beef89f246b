// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagepane.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QVBoxLayout>

namespace Tidel {

namespace {

constexpr int typingPause = 120; // In milliseconds. Who types fast searches once for several letters.

} // namespace

MessagePane::MessagePane(Archive *archive, QWidget *parent)
    : QWidget(parent), m_words(new QLineEdit(this)), m_view(new MessageView(archive, this)),
      m_state(new QLabel(m_view->viewport()))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_words);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
    m_words->setClearButtonEnabled(true);
    m_words->setAccessibleName(tr("Search"));
    auto *stateLayout = new QVBoxLayout(m_view->viewport());
    stateLayout->addWidget(m_state);
    m_state->setAlignment(Qt::AlignCenter);
    m_state->setWordWrap(true);
    m_state->setForegroundRole(QPalette::Text);
    m_state->setTextFormat(Qt::PlainText);
    m_state->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_typing.setSingleShot(true);
    m_typing.setInterval(typingPause);
    connect(m_words, &QLineEdit::textChanged, &m_typing, QOverload<>::of(&QTimer::start));
    connect(m_words, &QLineEdit::returnPressed, this, [this] {
        search();
        m_view->setFocus();
    });
    auto *down = new QShortcut(Qt::Key_Down, m_words, nullptr, nullptr, Qt::WidgetShortcut);
    connect(down, &QShortcut::activated, this, [this] {
        m_view->setFocus();
        m_view->selectFirst();
    });
    connect(&m_typing, &QTimer::timeout, this, &MessagePane::search);
    const MessageModel *messages = m_view->messages();
    connect(messages, &MessageModel::loadingChanged, this, &MessagePane::showState);
    connect(messages, &MessageModel::errorChanged, this, &MessagePane::showState);
    connect(messages, &MessageModel::rowsInserted, this, &MessagePane::showState);
    connect(messages, &MessageModel::rowsRemoved, this, &MessagePane::showState);
    connect(messages, &MessageModel::modelReset, this, &MessagePane::showState);
}

void MessagePane::show(const MessageQuery &query, const QString &title)
{
    m_query = query;
    m_words->clear();
    m_typing.stop();
    m_words->setPlaceholderText(tr("Search in %1").arg(title));
    m_view->setQuery(query);
}

void MessagePane::setHint(const QString &hint)
{
    m_hint = hint;
    showState();
}

void MessagePane::setSaveAction(QAction *save)
{
    QAction *button = m_words->addAction(save->icon(), QLineEdit::TrailingPosition);
    button->setText(save->text());
    button->setToolTip(save->toolTip());
    button->setVisible(false);
    connect(button, &QAction::triggered, save, &QAction::trigger);
    const auto showButton = [button, save](bool isShown) {
        button->setVisible(isShown);
        save->setEnabled(isShown);
    };
    connect(m_words, &QLineEdit::textChanged, button,
            [showButton](const QString &text) { showButton(!text.trimmed().isEmpty()); });
}

void MessagePane::startSearch()
{
    m_words->setFocus(Qt::ShortcutFocusReason);
    m_words->selectAll();
}

bool MessagePane::endSearch()
{
    const bool isSearching = !m_words->text().isEmpty() || m_words->hasFocus();
    m_words->clear();
    if (m_words->hasFocus())
        m_view->setFocus();
    return isSearching;
}

QString MessagePane::words() const
{
    return (m_query.words + QLatin1Char(' ') + m_words->text()).simplified();
}

void MessagePane::search()
{
    m_typing.stop();
    MessageQuery query = m_query;
    query.words = words();
    if (query.words != m_view->query().words)
        m_view->setQuery(query);
}

QString MessagePane::emptyText() const { return m_hint.isEmpty() ? tr("No messages") : m_hint; }

void MessagePane::showState()
{
    const MessageModel *messages = m_view->messages();
    QString text;
    if (messages->error())
        text = messages->errorText();
    else if (messages->rowCount() == 0 && !messages->isLoading())
        text = m_view->query().words.isEmpty() ? emptyText() : tr("No message has these words");
    m_state->setText(text);
    m_state->setVisible(!text.isEmpty());
}

} // namespace Tidel
