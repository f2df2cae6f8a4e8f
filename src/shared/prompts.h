#pragma once

#include "shared/progress.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// How a tool asks and tells its user something. Each call returns when the user has answered; meanwhile no
/// event of the same tool is handled (see EventGate).
class Prompts {
public:
    virtual ~Prompts() = default;

    /// Shows a text with an OK button. Lines are separated by CR LF. An empty title means the program's name.
    /// @param reason stands below the text, set off from it
    virtual void message(const std::string& text, const std::string& title = {},
                         const std::string& reason = {}) = 0;

    /// Tells that the adapter does not answer; a window offers its help page on that.
    virtual void tellOfSilence(const std::string& text, const std::string& reason)
    {
        message(text, {}, reason);
    }

    /// Asks for a line of text, which begins as `initial`. @return nothing for a Cancel
    virtual std::optional<std::string> input(const std::string& text, const std::string& title,
                                             const std::string& initial = {}) = 0;

    /// The same with a list to choose from; any other text may be typed.
    virtual std::optional<std::string> inputOrChoose(const std::string& text, const std::string& title,
                                                     const std::vector<std::string>& /*choices*/)
    {
        return input(text, title);
    }

    /// Lets the user choose one of some lines, at least one. @return its place from 0; nothing for a Cancel
    virtual std::optional<std::size_t> choose(const std::string& text, const std::string& title,
                                              const std::vector<std::string>& lines) = 0;

    /// Asks for OK or Cancel. @return true for OK; closing the question is a Cancel
    virtual bool confirm(const std::string& text, const std::string& title) = 0;

    /// Runs work that may take long, and shows meanwhile how far it is and what it does; the user can stop
    /// it. Throws what the work throws. @return false when it was stopped
    virtual bool runLong(const std::string& /*text*/, const std::function<void(Progress&)>& work)
    {
        work(unwatched);
        return true;
    }
};

} // namespace zint
