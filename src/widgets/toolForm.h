#pragma once

#include "platform/qtPrompts.h"
#include "shared/eventGate.h"
#include "widgets/toolContext.h"

#include <QAction>
#include <QMainWindow>
#include <QPushButton>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>

class QPrinter;
class QToolBar;

namespace zint {

class WindowPrinter;

/// What all windows of the program share: their menus' common entries, coming from and going back to the
/// launcher, the remembered size, printing, and the gate that lets one event in at a time.
class toolForm : public QMainWindow {
    Q_OBJECT

public:
    /// @param helpPage the name of the window's help page
    toolForm(ToolContext& context, std::string helpPage);
    ~toolForm() override;

Q_SIGNALS:
    void unloaded(); ///< the window has closed, even if its unloading failed; the launcher's turn

protected:
    /// Connects the controls that every window has under the same names, and restores the window's size.
    /// Called by the constructor of each window once its controls exist.
    void setUpCommonControls();

    /// Ends what the window has running; called once, when it closes, never inside another handler.
    virtual void Form_Unload() {}

    /// Ends what is being edited in place, so that it counts, before a button or a menu does or asks
    /// anything. What this throws keeps it from being done.
    virtual void endEditing() {}

    /// What "Print" puts on paper: the window's image, unless it has something better.
    virtual bool printOn(QPrinter& printer);

    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

    /// Lets a signal run an action through the gate. The action may have to wait, so it gets copies of the
    /// signal's values, or none if it takes none.
    template <typename Sender, typename Signal, typename Action>
    void on(Sender* sender, Signal signal, Action action)
    {
        connect(sender, signal, this, [this, action](auto... values) {
            if constexpr (std::is_invocable_v<const Action&, decltype(values)...>)
                gate_.run([action, values...] { action(values...); });
            else
                gate_.run(action);
        });
    }
    template <typename Form>
    void onClick(QPushButton* button, void (Form::*handler)())
    {
        on(button, &QPushButton::clicked, entering(handler));
    }
    template <typename Form>
    void onTrigger(QAction* action, void (Form::*handler)())
    {
        on(action, &QAction::triggered, entering(handler));
    }

    /// Runs what asks the user something before it does anything: the window's other events go on meanwhile,
    /// but it does not close. What is done with the answer has to pass the gate.
    void ask(const std::function<void()>& questions);

    /// Gives the buttons of a tool bar the names that they are known by.
    struct ToolButton {
        QAction* action;
        const char* name;
    };
    static void nameToolButtons(const QToolBar& bar, std::initializer_list<ToolButton> buttons);

    static bool isReturn(const QKeyEvent& event);

    /// What the Return key does where no control wants it: presses the button that has the focus, else the
    /// other one, if any.
    void pressFocused(QPushButton* otherwise);

    /// Opens a page of the help, or tells where it is.
    void showHelp(const std::string& page);

    static constexpr const char* silencePage = "docfails2"; ///< on an adapter that does not answer

    ToolContext& context() { return context_; }
    EventGate& gate() { return gate_; }
    Prompts& prompts() { return prompts_; }

private:
    template <typename Form>
    auto entering(void (Form::*handler)())
    {
        return [this, handler] {
            endEditing();
            (static_cast<Form*>(this)->*handler)();
        };
    }

    void mnuAbout_Click();
    void mnuHelp_Click();
    void mnuPrintSetup_Click();
    void mnuPrintOut_Click();
    void logo_Click();
    std::function<void(const std::string&)> tellingOfPage();
    void goBack();
    void unload();
    void leave();

    WindowPrinter& printer();

    ToolContext& context_;
    std::string helpPage_;
    EventGate gate_;
    QtPrompts prompts_;
    std::unique_ptr<WindowPrinter> printer_;
    bool hasUnloaded_ = false;
    int asking_ = 0;                ///< questions that are open
    bool closesAfterwards_ = false; ///< a close that waits for them
};

} // namespace zint
