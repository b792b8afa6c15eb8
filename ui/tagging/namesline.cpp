#include "ui/tagging/namesline.h"

#include "core/controllers/favouritetags.h"
#include "core/controllers/tagscontroller.h"
#include "models/completion/completionmodel.h"
#include "ui/tagging/completionlist.h"
#include "ui/widgets/speciallineedit.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

namespace {
constexpr int pageRows = 9;
constexpr QChar comma(u',');
} // namespace

NamesLine::NamesLine(const QString &title, const Taker &take, QWidget *parent)
    : QFrame(parent),
      m_take(take),
      m_title(new QLabel(this)),
      m_taken(new TakenNames(this)),
      m_edit(new SpecialLineEdit(this)),
      m_pin(new QToolButton(this)),
      m_close(new QToolButton(this)),
      m_model(new CompletionModel(this))
{
    setObjectName(QStringLiteral("namesLine"));
    buildForm();
    setTitle(title);
    connect(m_edit, &QLineEdit::textEdited, this, &NamesLine::edited);
    connect(m_edit, &SpecialLineEdit::escPressed, this, &NamesLine::closeLine);
    connect(m_edit, &SpecialLineEdit::focusLost, this, [this] {
        if (m_list)
            m_list->hide();
    });
    connect(m_close, &QToolButton::clicked, this, &NamesLine::closeLine);
    hide();
}

NamesLine::~NamesLine()
{
    // The window would delete it with its other children, but the model that it shows goes with the line.
    delete m_list;
}

void NamesLine::buildForm()
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(m_title);
    layout->addWidget(m_taken);
    layout->addWidget(m_edit, 1);
    layout->addWidget(m_pin);
    layout->addWidget(m_close);
    m_taken->hide();
    m_title->setBuddy(m_edit);
    m_edit->setObjectName(QStringLiteral("namesEdit"));
    m_edit->setPlaceholderText(tr("Names of tags, parted by commas"));
    m_edit->installEventFilter(this);
    m_pin->setObjectName(QStringLiteral("pinButton"));
    m_pin->setCheckable(true);
    m_pin->setFocusPolicy(Qt::NoFocus);
    m_pin->hide();
    m_close->setIcon(QIcon(QStringLiteral(":/icons/close.png")));
    m_close->setAutoRaise(true);
    // By Tab alone: a click leaves the focus in the line, so that closing gives it back.
    m_close->setFocusPolicy(Qt::TabFocus);
    m_close->setToolTip(tr("Close (Esc)"));
    m_close->setAccessibleName(m_close->toolTip());
    setFocusProxy(m_edit);
}

void NamesLine::setTitle(const QString &title)
{
    m_title->setText(title);
    m_edit->setAccessibleName(title);
}

void NamesLine::offerPin(const QString &text, const QString &toolTip)
{
    m_pin->setText(text);
    m_pin->setToolTip(toolTip);
    m_pin->setAccessibleName(toolTip);
    m_pin->setFocusPolicy(Qt::TabFocus);
    m_pin->show();
}

bool NamesLine::isPinned() const
{
    return m_pin->isChecked();
}

void NamesLine::setController(TagsController *tags)
{
    if (m_tags)
        m_tags->disconnect(this);
    m_tags = tags;
    m_areNamesOld = true;
    // Names of one database mean nothing in another one.
    m_choice.clear();
    m_edit->clear();
    showChoice();
    closeLine();
    if (tags)
        connect(tags, &TagsController::namesChanged, this, [this] { m_areNamesOld = true; });
}

void NamesLine::readNames()
{
    if (!m_tags)
        return;
    // A hundred thousand names are put in order when they are needed, not with each tag that changes.
    if (m_areNamesOld)
        m_model->index().setNames(m_tags->allNames());
    m_areNamesOld = false;
    const FavouriteTags *favourites = m_tags->favourites();
    m_model->index().setLastUsed(favourites->lastUsed());
    m_model->setKeys(favourites->keyTexts());
}

void NamesLine::open()
{
    if (!m_tags)
        return;
    readNames();
    // Opened again while it is open, the way back stays what it was.
    if (QApplication::focusWidget() != m_edit)
        m_focusBefore = QApplication::focusWidget();
    // Made late: the constructor may run before the line stands in the window that the list belongs to.
    if (!m_list) {
        m_list = new CompletionList(this);
        m_list->setModel(m_model);
        connect(m_list, &QListView::clicked, this, [this] {
            takeOffered();
            m_edit->setFocus();
        });
    }
    show();
    m_edit->setFocus();
    complete();
}

void NamesLine::closeLine()
{
    const bool wasOpen = !isHidden();
    // Asked before it hides, as the toolkit gives the focus to whatever comes next in the order of Tab.
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    if (m_list)
        m_list->hide();
    hide();
    m_choice.clear();
    m_edit->clear();
    showChoice();
    if (hadFocus && m_focusBefore)
        m_focusBefore->setFocus();
    if (wasOpen)
        emit closed();
}

void NamesLine::complete()
{
    if (!m_list)
        return;
    if (m_areNamesOld)
        readNames();
    const QString text = m_edit->text();
    m_completed = text;
    m_model->complete(text, m_choice.ids());
    // Without a text nothing is meant yet, and what lies below the line is to be seen.
    if (text.simplified().isEmpty()) {
        m_list->hide();
        return;
    }
    m_list->showAt(m_edit);
    m_list->moveTo(0);
}

void NamesLine::edited(const QString &text)
{
    // Several names at once come by a paste; the last one is still being typed.
    QString rest = text;
    int from = 0;
    for (int end = rest.indexOf(comma); end >= 0; end = rest.indexOf(comma, from)) {
        const QString name = rest.left(end);
        // A comma may stand in a name. It parts names unless one goes on with it and none ends before it.
        if (m_model->index().idOf(name.simplified()) == 0 && m_model->index().goesOnWithComma(name)) {
            from = end + 1;
            continue;
        }
        take(name);
        rest = rest.mid(end + 1);
        from = 0;
    }
    if (rest != text) {
        m_edit->setText(rest);
        showChoice();
    }
    complete();
}

void NamesLine::take(const QString &name)
{
    // What is offered belongs to the text that it was offered for.
    const QModelIndex offered = m_list && name == m_completed ? m_list->currentIndex() : QModelIndex();
    if (offered.isValid())
        m_choice.take(offered.data(CompletionModel::IdRole).toLongLong(),
                      offered.data(CompletionModel::NameRole).toString());
    else
        m_choice.take(m_model->index().idOf(name.simplified()), name);
}

void NamesLine::takeOffered()
{
    take(m_edit->text());
    m_edit->clear();
    showChoice();
    complete();
}

void NamesLine::takeBack()
{
    m_choice.takeLastBack();
    showChoice();
    complete();
}

void NamesLine::showChoice()
{
    m_taken->setNames(m_choice.names());
}

void NamesLine::commit()
{
    // A box that says why it failed runs a loop, in which another Return may arrive.
    if (m_isTaking || !m_tags)
        return;
    if (m_areNamesOld)
        readNames();
    if (m_list && (m_list->currentIndex().isValid() || !m_edit->text().simplified().isEmpty()))
        takeOffered();
    if (m_choice.isEmpty()) {
        if (isPinned())
            emit skipped();
        else
            closeLine();
        return;
    }
    m_isTaking = true;
    const bool isDone = m_take(m_choice.tags(m_model->index()));
    m_isTaking = false;
    // All that was named stays, so that nobody has to type it once more after a failure.
    if (!isDone) {
        m_edit->setFocus();
        return;
    }
    m_choice.clear();
    showChoice();
    if (isPinned())
        open();
    else
        closeLine();
}

bool NamesLine::handleKey(int key, Qt::KeyboardModifiers modifiers)
{
    // With Ctrl, Alt or Shift the keys belong to the window's commands and the line's own editing.
    if (modifiers & ~Qt::KeypadModifier || !m_list)
        return false;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        commit();
        return true;
    case Qt::Key_Tab:
        // Tab takes a name while one is being typed, and leaves the line otherwise.
        if (m_edit->text().simplified().isEmpty())
            return false;
        takeOffered();
        return true;
    case Qt::Key_Backspace:
        // While there is a text the key edits it, as everywhere.
        if (!m_edit->text().isEmpty() || m_choice.isEmpty())
            return false;
        takeBack();
        return true;
    case Qt::Key_Down:
    case Qt::Key_Up:
        m_list->showAt(m_edit);
        m_list->move(key == Qt::Key_Down ? 1 : -1);
        return true;
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
        m_list->move(key == Qt::Key_PageDown ? pageRows : -pageRows);
        return true;
    default:
        return false;
    }
}

bool NamesLine::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_edit && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (handleKey(key->key(), key->modifiers()))
            return true;
    }
    return QFrame::eventFilter(watched, event);
}

void NamesLine::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    m_taken->updateGeometry();
    if (m_list && m_list->isVisible())
        m_list->showAt(m_edit);
}
