#pragma once

#include <QDialog>

/** Shows that files are being located, which takes nobody knows how long. Rejected by Cancel. Modal use. */
class ProgressDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ProgressDialog(QWidget *parent = nullptr);
};
