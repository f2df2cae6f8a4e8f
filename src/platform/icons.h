#pragma once

namespace zint {

/// Lets icons that the desktop's theme lacks come from the program's own set, in the variant that suits the
/// colours. Called when the application object exists, and when its colours have changed.
void useOwnIcons();

/// Gives the program's windows its icon.
void useProgramIcon();

} // namespace zint
