#pragma once

#include "platform/qtPrompts.h"
#include "shared/eventGate.h"
#include "widgets/recordMenu.h"
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
    /// Sets up what the windows of all tools have under the same names.
    /// @param ui the window's controls, which exist by now
    template <typename Controls>
    void setUpTool(const Controls& ui)
    {
        setUpMenu(ui.mnuExit, ui.mnuAbout, ui.mnuHelp);
        onClick(ui.backCom, &toolForm::goBack);
        setUpWindow();
    }
    void setUpMenu(QAction* mnuExit, QAction* mnuAbout, QAction* mnuHelp);
    void setUpPrinting(QAction* mnuPrintSetup, QAction* mnuPrintOut);
    void setUpLogos(std::initializer_list<QPushButton*> logos);

    /// Gives buttons keys of their own: captions that come and go bear none.
    struct ButtonKey {
        const char* key; ///< "Alt+R"
        QPushButton* button;
    };
    void setUpKeys(std::initializer_list<ButtonKey> keys);

    /// Gives the window its icons and the size that it had. Called last by the constructor of each window.
    void setUpWindow();

    /// Ends what the window has running; called once, when it closes, never inside another handler.
    virtual void Form_Unload() {}

    /// Ends what is being edited in place, so that it counts, before a button or a menu does or asks
    /// anything. What this throws keeps it from being done.
    virtual void endEditing() {}

    /// What "Print" puts on paper: the window's image, unless it has something better.
    virtual bool printOn(QPrinter& printer);

    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

    /// Lets a signal run an action through the gate: the one way from a control to the window's tool. The
    /// action may have to wait, so it gets copies of the signal's values, or none if it takes none. A button
    /// or a menu entry ends what is being edited in place first.
    template <typename Sender, typename Signal, typename Action>
    void on(Sender* sender, Signal signal, Action action)
    {
        connect(sender, signal, this, [this, action](auto... values) {
            gate_.run([this, action, values...] {
                if constexpr (std::is_base_of_v<QPushButton, Sender> || std::is_base_of_v<QAction, Sender>)
                    endEditing();
                if constexpr (std::is_invocable_v<const Action&, decltype(values)...>)
                    action(values...);
                else
                    action();
            });
        });
    }
    template <typename Sender, typename Signal, typename Form, typename... Values>
    void on(Sender* sender, Signal signal, void (Form::*handler)(Values...))
    {
        on(sender, signal,
           [this, handler](Values... values) { (static_cast<Form*>(this)->*handler)(values...); });
    }
    template <typename Form>
    void onClick(QPushButton* button, void (Form::*handler)())
    {
        on(button, &QPushButton::clicked, handler);
    }
    template <typename Form>
    void onTrigger(QAction* entry, void (Form::*handler)())
    {
        on(entry, &QAction::triggered, handler);
    }

    /// Lets a signal ask the user something before anything is done: see ask().
    template <typename Sender, typename Signal, typename Questions>
    void onAsking(Sender* sender, Signal signal, Questions questions)
    {
        connect(sender, signal, this, [this, questions] { ask(questions); });
    }

    /// Runs questions to the user outside the gate: the window's other events go on meanwhile, but it does
    /// not close. What is done with the answer has to enter the gate by itself.
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

    /// Asks where to and saves what was sent and received last, for one who looks for a fault.
    void saveLastExchange() { recordMenu_.saveLastExchange(); }

    static constexpr const char* silencePage = "docfails2"; ///< on an adapter that does not answer

    ToolContext& context() { return context_; }
    EventGate& gate() { return gate_; }
    Prompts& prompts() { return prompts_; }

private:
    enum class Closing { no, afterQuestions, unloaded };

    void setUpRecordMenu(QMenu& help);
    void tellRecordingEnded(const std::string& why);
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
    RecordMenu recordMenu_;
    std::unique_ptr<WindowPrinter> printer_;
    int asking_ = 0; ///< questions that are open
    Closing closing_ = Closing::no;
};

} // namespace zint
