#pragma once

#include <QCoreApplication>
#include <QString>

#include <memory>

class PartFile;
struct ExportRequest;

/** Makes what an export writes to, empty and beside the place where it is to stand. */
class ExportTarget
{
    Q_DECLARE_TR_FUNCTIONS(ExportTarget)

public:
    /** Null, and refusal() tells why, when there is no place for it. A database has its tables. */
    std::shared_ptr<PartFile> make(const ExportRequest &request);
    const QString &refusal() const { return m_refusal; }

private:
    bool mayStandAt(const QString &path, int form);
    bool refuse(const QString &reason);

    QString m_refusal;
};
