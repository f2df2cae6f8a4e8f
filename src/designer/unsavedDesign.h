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
    void begin(DesignContent content);

    /// The design that has come in is in no file.
    void beginUnsaved() { asSaved_.reset(); }

    /// It has been saved like this.
    void saved(DesignContent content);

    /// Whether something would be lost with it. Disabled rows that a commit has dropped are no loss.
    bool isModified(const DesignContent& content) const;

    /// Keeps the design if it has changed, or forgets it when it is as it was saved.
    /// @throws FileError when it can't be kept
    void follow(const DesignContent& content, const Design& design);

private:
    KeptDesigns& kept_;
    std::optional<DesignContent> asSaved_; ///< as a file or the program has it; nothing when none has
    DesignContent lastFollowed_;
};

} // namespace zint
