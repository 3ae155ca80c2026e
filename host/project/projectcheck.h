#ifndef HOST_PROJECT_PROJECTCHECK_H
#define HOST_PROJECT_PROJECTCHECK_H

#include "host/project/diagnostics.h"

namespace host {

/** The rules beyond single values that a project must keep. */

/** The panel's and the PC's name of the link's port. */
void checkLinkPorts(const LinkDefinition& link, const SourcePlace& hmi_place,
                    const SourcePlace& port_place, Diagnostics& diagnostics);

/** Address, type and count of a tag against each other and the driver's limits. */
void checkTagShape(const TagDefinition& tag, const SourcePlace& address_place,
                   const SourcePlace& count_place, Diagnostics& diagnostics);

/** Links, nodes and tags against each other. Fills in default nodes and the
 *  stations of tags. */
void completeAndCheck(Project& project, Diagnostics& diagnostics);

/** The number that the database knows a panel port by: COM1 is 1000, every
 *  Ethernet port 2000; 0 for any other text. */
int hmiPortNumber(const QString& hmi_port);

} // namespace host

#endif
