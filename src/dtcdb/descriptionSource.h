#pragma once

#include "dtcdb/codeDescriptions.h"
#include "dtcdb/dtcDatabase.h"

#include <memory>
#include <string>
#include <utility>

namespace zint {

/// Where all look-ups find descriptions: in the user's database or, where there is none, in the text file
/// that comes with the program, which stays as it is.
class DtcDescriptionSource final : public CodeDescriptionSource {
public:
    DtcDescriptionSource(std::string databasePath, std::string shippedText)
        : databasePath_(std::move(databasePath)), shippedText_(std::move(shippedText))
    {
    }

    bool available() const override;
    std::unique_ptr<CodeDescriptions> open() const override { return openDatabase(); }

    /// As open(), with all that a record holds. The shipped descriptions are read into the memory.
    std::unique_ptr<DtcDatabase> openDatabase() const;

private:
    std::string databasePath_;
    std::string shippedText_;
};

} // namespace zint
