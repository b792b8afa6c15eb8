// Reads pictures for programs other than the main one, which does it by itself.

#include "fileops/pictures/picturechild.h"

int main(int argc, char *argv[])
{
    return PictureChild::isAskedFor(argc, argv) ? PictureChild::run() : 1;
}
