#ifndef ORV_VERSION_H
#define ORV_VERSION_H

/* The product's version. It stands here alone: everything else takes it from here. */
#define ORV_VERSION_MAJOR 1
#define ORV_VERSION_MINOR 0
#define ORV_VERSION_PATCH 0

#define ORV_VERSION_NUMBERS ORV_VERSION_MAJOR, ORV_VERSION_MINOR, ORV_VERSION_PATCH, 0
#define ORV_VERSION_TEXT_OF(number) #number
#define ORV_VERSION_JOINED(major, minor, patch) \
    ORV_VERSION_TEXT_OF(major) "." ORV_VERSION_TEXT_OF(minor) "." ORV_VERSION_TEXT_OF(patch)
#define ORV_VERSION_SHORT_TEXT ORV_VERSION_JOINED(ORV_VERSION_MAJOR, ORV_VERSION_MINOR, ORV_VERSION_PATCH)
#define ORV_VERSION_TEXT ORV_VERSION_SHORT_TEXT ".0"

#endif
