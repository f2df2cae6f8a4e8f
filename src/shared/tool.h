#pragma once

namespace zint {

/// The tools that the launcher opens.
enum class Tool { codes, dtcEditor, pollDesigner, pollRunner, scanner, terminal, vehicleReport };

} // namespace zint
