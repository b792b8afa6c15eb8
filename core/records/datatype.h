#pragma once

#include <QMetaType>

/** The values of a File that can be read by number. Models use the numbers as roles: they never change. */
enum DataType : int {
    Name = 0,
    Description = 1,
    Thumbnail = 2,
    AdditionDate = 3,
    ModificationDate = 4,
    Size = 5,
    LoadId = 6,
    StorageId = 7,
    IdCode = 8,
    Type = 9,
    Tags = 10,
    Checksum = 11,
    Path = 12,
    RelPath = 13,
    Internal = 14
};

Q_DECLARE_METATYPE(DataType)
