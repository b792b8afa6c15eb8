#pragma once

#include <QFile>

#include <functional>

/**
 * A new file under a hidden name of the program's own, as ".vorna-1.part". It is locked for as long as it is
 * open: what an ended process has left behind is told by that from what another one is writing. Closed, not
 * removed, by the destructor. Any thread.
 */
class LockedFile
{
public:
    enum Access { ForOwner, AsUsual };

    /** False, with the reason in errno, when the folder takes no new file. */
    bool open(const QString &folder, const QString &ending, Access access);
    /** Open for writing, by its descriptor, so that it knows no name. */
    QFile &device() { return m_device; }
    const QString &path() const { return m_path; }
    bool remove();

    /**
     * Removes such files in a folder, those of this user which nobody holds, after handing on the path of
     * each.
     */
    static void removeLeftovers(const QString &folder, const QString &ending,
                                const std::function<void(const QString &path)> &visit = {});

private:
    QFile m_device;
    QString m_path;
};
