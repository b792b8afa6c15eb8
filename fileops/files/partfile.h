#pragma once

#include "fileops/files/lockedfile.h"

/**
 * A new file beside the place where it is to stand: whoever looks at the folder meanwhile sees no half of it.
 * What gets no name is removed with the object. Any thread.
 */
class PartFile
{
public:
    enum Outcome {
        Named,
        Refused, ///< the name is taken, or none for this disk; another one may do
        Failed
    };

    explicit PartFile(const QString &target) : m_target(target) {}
    ~PartFile();
    PartFile(const PartFile &) = delete;
    PartFile &operator=(const PartFile &) = delete;

    /** One that takes another's place is readable by nobody who cannot read that one. */
    bool open(bool isReplacing);
    const QString &path() const { return m_file.path(); }
    QFile &device() { return m_file.device(); }

    /** Takes nobody's place, should one have come there meanwhile. */
    Outcome giveName();
    /** Takes the place of what has the name, once it is safe on the disk. */
    Outcome replace();
    bool isReplacing() const { return m_isReplacing; }
    /** Removes it before the object goes; nothing once it has its name. */
    void discard();

    /** Removes what ended processes have left in the folder of a target. */
    static void removeLeftovers(const QString &folder);

private:
    Outcome finish(bool isNamed);

    QString m_target;
    LockedFile m_file;
    bool m_isReplacing = false;
    bool m_isPending = false; ///< there is a file without its name
};
