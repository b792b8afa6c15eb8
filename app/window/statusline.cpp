#include "app/window/statusline.h"

#include "app/settings/showntext.h"

#include <QLabel>
#include <QStatusBar>
#include <QStringList>

namespace {
constexpr int newsMilliseconds = 6000;
constexpr int happenedMilliseconds = 8000;
} // namespace

StatusLine::StatusLine(QStatusBar *bar)
    : QObject(bar), m_bar(bar), m_happened(new QLabel(bar)), m_sizes(new QLabel(bar))
{
    m_sizes->setObjectName(QStringLiteral("sizesLabel"));
    m_happened->setObjectName(QStringLiteral("happenedLabel"));
    // A name of others is no markup.
    m_happened->setTextFormat(Qt::PlainText);
    bar->addPermanentWidget(m_happened);
    m_happenedTime.setSingleShot(true);
    m_happenedTime.setInterval(happenedMilliseconds);
    connect(&m_happenedTime, &QTimer::timeout, m_happened, &QLabel::clear);
    connect(bar, &QStatusBar::messageChanged, this, [this](const QString &text) {
        // Its time is over, or nobody else has said anything.
        if (text.isEmpty() && !m_news.isEmpty()) {
            m_news.clear();
            m_bar->showMessage(m_text);
        }
    });
}

void StatusLine::setText(const QString &text)
{
    m_text = ShownText::cut(text);
    // It would be gone before it is read: merging what others did counts the files anew.
    if (m_news.isEmpty() || m_bar->currentMessage() != m_news)
        m_bar->showMessage(m_text);
}

void StatusLine::tellNews(const NewsCount &count)
{
    if (count.isEmpty())
        return;
    m_news = textOf(count);
    m_bar->showMessage(m_news, newsMilliseconds);
}

void StatusLine::takePlace()
{
    m_bar->addPermanentWidget(m_sizes);
}

void StatusLine::setSizes(const QString &text)
{
    m_sizes->setText(text);
}

void StatusLine::tell(const QString &text)
{
    m_happened->setText(ShownText::cut(text));
    m_happenedTime.start();
}

QString StatusLine::textOf(const NewsCount &count)
{
    QStringList parts;
    const auto add = [&parts](int n, const QString &one, const QString &more) {
        if (n > 0)
            parts.append(n == 1 ? one : more);
    };
    add(count.tags, tr("1 tag"), tr("%Ln tags", nullptr, count.tags));
    add(count.groups, tr("1 group"), tr("%Ln groups", nullptr, count.groups));
    add(count.nodes, tr("1 node"), tr("%Ln nodes", nullptr, count.nodes));
    add(count.relations, tr("1 tag relationship"), tr("%Ln tag relationships", nullptr, count.relations));
    add(count.trees, tr("1 browsing tree"), tr("%Ln browsing trees", nullptr, count.trees));
    add(count.files, tr("1 file"), tr("%Ln files", nullptr, count.files));
    return tr("%1 changed by others").arg(parts.join(tr(", ", "between the parts of a list")));
}
