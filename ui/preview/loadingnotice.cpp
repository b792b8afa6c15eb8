#include "ui/preview/loadingnotice.h"

#include "app/settings/showntext.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
// Most pictures are there by then: a notice would only flicker.
constexpr int millisecondsOfPatience = 200;
constexpr int mostTextWidth = 320;
} // namespace

LoadingNotice::LoadingNotice(QWidget *parent) : QFrame(parent), m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("LoadingNotice"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    // Those of the full screen are not for reading.
    setPalette(QPalette());
    m_text->setTextFormat(Qt::PlainText);
    m_text->setAlignment(Qt::AlignCenter);
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancelLoadingButton"));
    // The arrow keys go on walking.
    cancel->setFocusPolicy(Qt::TabFocus);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    layout->addWidget(cancel, 0, Qt::AlignCenter);
    connect(cancel, &QPushButton::clicked, this, &LoadingNotice::canceled);
    m_patience.setSingleShot(true);
    m_patience.setInterval(millisecondsOfPatience);
    connect(&m_patience, &QTimer::timeout, this, &LoadingNotice::appear);
    parent->installEventFilter(this);
    hide();
}

void LoadingNotice::begin(const QString &name)
{
    const QString shown = fontMetrics().elidedText(ShownText::cut(name), Qt::ElideMiddle, mostTextWidth);
    m_text->setText(tr("Loading \"%1\"...").arg(shown));
    if (isVisible())
        place();
    else
        m_patience.start();
}

void LoadingNotice::end()
{
    m_patience.stop();
    hide();
}

void LoadingNotice::appear()
{
    place();
    raise();
    show();
    emit appeared();
}

void LoadingNotice::place()
{
    resize(sizeHint());
    move((parentWidget()->width() - width()) / 2, (parentWidget()->height() - height()) / 2);
}

bool LoadingNotice::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parent() && event->type() == QEvent::Resize && isVisible())
        place();
    return QFrame::eventFilter(watched, event);
}
