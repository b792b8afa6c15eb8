#pragma once

#include <QDialog>

class File;

/** Tells all about one file as a text that can be marked and copied. */
class PropertiesDialog : public QDialog
{
    Q_OBJECT

public:
    explicit PropertiesDialog(const File &file, QWidget *parent = nullptr);

    static QString text(const File &file);
};
