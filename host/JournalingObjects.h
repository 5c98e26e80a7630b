#pragma once

#include "host/HostBuilding.h"
#include "host/HostElement.h"
#include "host/HostJournal.h"
#include "host/HostObjectTemplate.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"

#include <memory>

namespace pluvarine {

// The host objects the macro reaches through the connection, each wrapped so its calls go into
// the journal. Objects they return are wrapped in turn; nothing stays nothing.
std::shared_ptr<HostBuilding> journaled(std::shared_ptr<HostBuilding> building,
                                        HostJournal& journal);
std::shared_ptr<HostObjectTemplate> journaled(std::shared_ptr<HostObjectTemplate> objectTemplate,
                                              HostJournal& journal);

} // namespace pluvarine
