#include "ui/dialogs/nameinput.h"

#include <QCoreApplication>
#include <QInputDialog>

namespace {

/** Where the texts of this file are looked up. */
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(NameInput)
};

/** Closes only with a name that was taken: one that was refused can be mended, or tried again. */
class NameDialog : public QInputDialog
{
public:
    /** The sign is no part of a name. */
    NameDialog(QWidget *parent, const NameInput::Taker &take, QChar forbidden = QChar())
        : QInputDialog(parent), m_take(take), m_forbidden(forbidden)
    {
    }

    bool askFor(const QString &title, const QString &label)
    {
        setWindowTitle(title);
        setLabelText(label);
        return exec() == QDialog::Accepted;
    }

    void accept() override
    {
        // The box that says why may run a loop, in which another Return arrives.
        if (m_isTaking)
            return;
        m_isTaking = true;
        const QString name = textValue().remove(m_forbidden);
        const bool isBlank = name.simplified().isEmpty();
        const bool isTaken = !isBlank && m_take(name);
        m_isTaking = false;
        if (isTaken)
            QInputDialog::accept();
        else if (isBlank)
            reject();
    }

private:
    NameInput::Taker m_take;
    QChar m_forbidden;
    bool m_isTaking = false;
};

} // namespace

namespace NameInput {

bool ask(QWidget *parent, const QString &title, const QString &label, const Taker &take)
{
    return NameDialog(parent, take).askFor(title, label);
}

bool askForGroup(QWidget *parent, const Taker &take)
{
    return NameDialog(parent, take, QLatin1Char('"'))
        .askFor(Texts::tr("Group name"), Texts::tr("Name of new group:"));
}

} // namespace NameInput
