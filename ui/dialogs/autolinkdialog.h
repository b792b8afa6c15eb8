#pragma once

#include <QDialog>

/** Shows where the folder lies that is linked to a node, as text that can be copied. */
class AutoLinkDialog : public QDialog
{
    Q_OBJECT

public:
    AutoLinkDialog(const QString &absolutePath, const QString &relativePath, QWidget *parent = nullptr);
};
