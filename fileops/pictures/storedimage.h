#pragma once

#include <QImage>

/** A picture as it was read for showing, or why there is none. */
struct StoredImage
{
    enum State {
        Loaded,
        UnknownFile,        ///< no such record, or a hyperlink
        FileGone,           ///< the file of an external record is not there
        ExternalUnreadable, ///< the file is there, yet no picture, or one too large
        InternalUnreadable, ///< the same for contents in the database
        Busy,               ///< another connection keeps the database to itself
        Unreachable         ///< the connection to the database is lost: the user has been told
    };
    /** What became of a picture that was to be written back. Unless it is Saved nothing has changed. */
    enum Saving {
        Saved,
        NotSaved, ///< the format cannot be written, the contents changed since, the file cannot be replaced
        Refused   ///< read-only, busy, full, changed by others or lost: the user has been told
    };

    State state = UnknownFile;
    QImage image; ///< upright; null unless Loaded
};
