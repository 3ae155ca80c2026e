#ifndef TESTS_UNIT_SESSION_DATATAG_H
#define TESTS_UNIT_SESSION_DATATAG_H

#include "host/project/project.h"

/** A tag of link 1 that is named by its address. */
inline host::TagDefinition dataTag(const char* address_text, int station = 1,
                                   const char* type = "dword", int count = 1) {
    host::TagDefinition tag;
    tag.name = QLatin1String(address_text);
    tag.address = *host::parseProjectAddress(tag.name);
    tag.type = *host::tagTypeByName(QLatin1String(type));
    tag.count = count;
    tag.link_id = 1;
    tag.station = station;
    return tag;
}

#endif
