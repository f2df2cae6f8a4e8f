#pragma once

// The plotting library. Its header writes the toolkit's keywords, which this program does without.

// NOLINTBEGIN
#define signals Q_SIGNALS
#define foreach Q_FOREACH
#include <qcustomplot.h>
#undef signals
#undef foreach
// NOLINTEND
