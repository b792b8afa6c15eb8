#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/** What the demo database holds, as plain data. Tags are named; files name the tags that they carry. */
namespace DemoContents {
struct Group
{
    QString name;
    QStringList tags;
};

struct TextFile
{
    QString name;
    QStringList tags;
    QString description;
    QString text;
};

struct Picture
{
    enum Motif { Landscape, Flower, Pattern, Plan };
    QString name;
    QStringList tags;
    QString description;
    Motif motif;
};

struct Hyperlink
{
    QString address;
    QStringList tags;
    QString description;
};

/** A node by its path of tag names, parents first; a leading "- " marks an inverted node. */
struct Node
{
    QStringList path;
    bool usesRelationships = false;
};

QVector<Group> groups();
QVector<TextFile> texts();
QVector<Picture> pictures();
/** Texts that stay files on disk beside the database. */
QVector<TextFile> externalTexts();
QVector<Hyperlink> hyperlinks();
QVector<Node> nodes();
/** Paths of tag names, parents first. */
QVector<QStringList> relationships();
} // namespace DemoContents
