#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// Descriptions of trouble codes, open for look-ups.
class CodeDescriptions {
public:
    virtual ~CodeDescriptions() = default;

    /// The description of a five-character code such as "P0133"; nothing when the code has no record.
    /// @throws DatabaseError when the database can't be read
    virtual std::optional<std::string> describe(std::string_view code) = 0;
};

/// Where descriptions come from; opened anew for each list of codes, so that another program can write in
/// between.
class CodeDescriptionSource {
public:
    virtual ~CodeDescriptionSource() = default;

    /// Whether there is something to open; asked once, when a tool is opened.
    virtual bool available() const = 0;

    /// @throws DatabaseError when it can't be opened
    virtual std::unique_ptr<CodeDescriptions> open() const = 0;
};

} // namespace zint
