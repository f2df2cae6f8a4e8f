#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// A transcript without the vehicle's identity: the last six characters of the VIN, by which vehicles of a
/// kind differ, are zeros wherever service 09 or 22 tells it, in damaged replies, too. A comment says so.
/// The lines stay readable, with checksums that fit; the VIN's own check digit need not. Nothing that the
/// standards define tells where a vehicle is.
std::string withoutIdentity(std::string_view transcript);

/// The same for a transcript that comes piece by piece, each of whole lines.
std::function<std::string(std::string_view)> identityMask();

} // namespace zint
