#pragma once

#include "catalogue/design.h"
#include "runner/pollPlan.h"
#include "vehicle/busProtocol.h"

#include <deque>
#include <string>

namespace zint {

/// Header and filter that an adapter has in a run before one of its own is set: those of the design's extra
/// commands, else the protocol's header for requests to all units. Empty: not known, and no filter.
BusAddress usualAddress(const Design& design, BusProtocol protocol);

/// What leads the adapter from one address to another, which may be the usual one; nothing where that makes
/// no difference. Where the usual header is not known, all settings are sent anew.
std::deque<std::string> addressCommands(const BusAddress& from, const BusAddress& to, const BusAddress& usual,
                                        const Design& design);

/// What is sent in place of a command that older adapters refuse; empty where there is nothing.
std::string olderCommand(std::string_view command);

} // namespace zint
