#pragma once

#include "fileops/pictures/childprocess.h"
#include "fileops/pictures/picturemessage.h"
#include "fileops/pictures/picturerequest.h"

#include <functional>

/**
 * Has pictures read by a child process, which it starts when there is none, and replaces when a picture has
 * ended it or takes too long. What the child answers is not trusted either. Used by one thread at a time.
 */
class PictureDecoder
{
public:
    /** The program that reads pictures and its one argument; without it no picture is read. */
    static void setProgram(const char *program, const char *argument);

    bool isRunning() const { return m_child.isRunning(); }
    /** Waits for the answer as long as `isWanted` says so, and no longer than the limits let it. */
    PictureAnswer read(const PictureRequest &request, const PictureLimits &limits,
                       const std::function<bool()> &isWanted);

private:
    using Wait = std::function<bool()>;
    bool begin(const PictureMessage::Request &message, int file, const Wait &isWanted);
    bool receive(PictureUse use, PictureAnswer &answer, const Wait &mayWait);
    bool receiveImage(const PictureMessage::Answer &head, PictureAnswer &answer, const Wait &mayWait);

    ChildProcess m_child;
};
