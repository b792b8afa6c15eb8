#include "ui/preview/descriptionbar.h"

#include "ui/preview/validator.h"

#include <QLabel>
#include <QLineEdit>
#include <QLocale>

DescriptionBar::DescriptionBar(QWidget *parent)
    : QToolBar(tr("Description"), parent),
      m_validator(new Validator(this)),
      m_edit(new QLineEdit(this)),
      m_scale(new QLabel(this))
{
    setObjectName(QStringLiteral("descriptionBar"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    m_edit->setObjectName(QStringLiteral("descriptionEdit"));
    m_edit->setAccessibleName(tr("Description"));
    m_edit->setPlaceholderText(tr("Description"));
    m_edit->setValidator(m_validator);
    m_scale->setObjectName(QStringLiteral("scaleLabel"));
    m_scale->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_scale->setMargin(4);
    m_scale->setMinimumWidth(m_scale->fontMetrics().horizontalAdvance(QStringLiteral(" 0000 % ")));
    addWidget(m_edit);
    addWidget(m_scale);
    connect(m_edit, &QLineEdit::returnPressed, this, &DescriptionBar::returnPressed);
}

QString DescriptionBar::text() const
{
    return m_edit->text();
}

bool DescriptionBar::isModified() const
{
    return m_edit->isModified();
}

void DescriptionBar::setModified(bool isModified)
{
    m_edit->setModified(isModified);
}

void DescriptionBar::showStored(const QString &text)
{
    if (m_edit->isModified() || m_edit->text() == text)
        return;
    m_validator->setGivenText(text);
    m_edit->setText(text);
    m_edit->setCursorPosition(0);
}

void DescriptionBar::setReadOnly(bool isReadOnly)
{
    m_edit->setReadOnly(isReadOnly);
}

void DescriptionBar::showScale(double scale)
{
    const double percent = scale * 100;
    m_scale->setText(tr("%1 %").arg(scale < 1 ? QLocale().toString(percent, 'g', 3)
                                              : QLocale().toString(qRound(percent))));
}
