#include "core/records/recordtypes.h"

void registerRecordTypes()
{
    // The names as moc spells them in the signals: a queued connection looks its types up by these.
    qRegisterMetaType<NodeType>("NodeType");
    qRegisterMetaType<DataType>("DataType");
    qRegisterMetaType<FileMap>("Map<qint64,File*>");
    qRegisterMetaType<TBnodeMap>("Map<qint64,TBnode*>");
    qRegisterMetaType<GroupMap>("Map<qint64,GroupItem*>");
    qRegisterMetaType<TextMap>("Map<qint64,QString>");
    qRegisterMetaType<AutoLinkMap>("Map<QString,AutoLink*>");
    qRegisterMetaType<TagVector>("Vector<TagItem*>");
    qRegisterMetaType<TRnodeVector>("Vector<QPair<QString,TRnode*> >");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<QList<TBnode *>>("QList<TBnode*>");
    qRegisterMetaType<QList<TRnode *>>("QList<TRnode*>");
}
