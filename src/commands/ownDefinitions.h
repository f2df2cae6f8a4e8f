#pragma once

#include "catalogue/design.h"
#include "parameters/ownParameters.h"

#include <string>

namespace zint {

/// The user's own parameters. @throws FileError
OwnParameters userParameters();

/// Gives the events of a design, or of a log's, the own parameters that they mean: those of a file beside it,
/// else the user's. Tells on standard error which are not defined. @throws FileError
void defineOwn(Design& design, const std::string& path);

} // namespace zint
