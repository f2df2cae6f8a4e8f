#pragma once

#include "shared/prompts.h"

class QWidget;

namespace zint {

/// Asks in message boxes over a window.
class QtPrompts final : public Prompts {
public:
    /// @param window outlives the prompts
    explicit QtPrompts(QWidget& window) : window_(window) {}

    void message(const std::string& text, const std::string& title, const std::string& reason) override;
    void tellOfSilence(const std::string& text, const std::string& reason) override;
    std::optional<std::string> input(const std::string& text, const std::string& title,
                                     const std::string& initial) override;
    std::optional<std::string> inputOrChoose(const std::string& text, const std::string& title,
                                             const std::vector<std::string>& choices) override;
    std::optional<std::size_t> choose(const std::string& text, const std::string& title,
                                      const std::vector<std::string>& lines) override;
    bool confirm(const std::string& text, const std::string& title) override;
    bool runLong(const std::string& text, const std::function<void(Progress&)>& work) override;

    std::function<void()> helpOnSilence; ///< shows the help on an adapter that does not answer
    std::function<void()> saveExchange;  ///< saves what was sent to it, and what came; empty: nobody can

private:
    QWidget& window_;
};

} // namespace zint
