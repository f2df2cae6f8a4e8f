#pragma once

#include "designer/keptDesigns.h"

#include <optional>

namespace zint {

/// Follows the design that is being edited: tells whether it would be lost, and keeps it for as long as it
/// would.
class UnsavedDesign {
public:
    /// @param kept outlives this
    explicit UnsavedDesign(KeptDesigns& kept) : kept_(kept) {}

    /// A design has come in that a file has, or the program itself; the one before stays kept if it was not
    /// saved.
    void begin(Design draft);

    /// The design that has come in is in no file.
    void beginUnsaved() { asSaved_.reset(); }

    /// It has been saved like this.
    void saved(Design draft);

    /// Whether something would be lost with it. Disabled rows that a commit has dropped are no loss.
    bool isModified(const Design& draft) const;

    /// Keeps the design if it has changed, or forgets it when it is as it was saved.
    /// @throws FileError when it can't be kept
    void follow(const Design& draft);

private:
    KeptDesigns& kept_;
    std::optional<Design> asSaved_; ///< as a file or the program has it; nothing when none has
    std::optional<Design> lastFollowed_;
};

} // namespace zint
