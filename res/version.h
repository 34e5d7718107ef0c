#ifndef ORV_VERSION_H
#define ORV_VERSION_H

/* The product's version, as every image of it carries it. */
#define ORV_VERSION_NUMBERS 1, 0, 0, 0
#define ORV_VERSION_TEXT "1.0.0.0"

#endif
