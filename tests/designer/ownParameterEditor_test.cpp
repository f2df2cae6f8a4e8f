#include "designer/ownParameterEditor.h"
#include "shared/fileError.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

struct OwnParameterEditorTest : testing::Test {
    TemporaryFolder folder;
    ScriptedAdapter adapter;
    ManualTimer timer, silence;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start"};
    ParametersFile file{folder.path()};
    std::size_t uses = 0;
    int stored = 0;
    std::optional<OwnParameterEditor> editor;

    OwnParameterEditorTest() { open(); }

    void open()
    {
        editor.emplace(OwnParameterEditor::Surroundings{.line = {adapter, {}, timer, &silence},
                                                        .file = file,
                                                        .prompts = prompts,
                                                        .dialogs = dialogs,
                                                        .values = values,
                                                        .usesOf = [this](std::int32_t) { return uses; },
                                                        .onStored = [this] { ++stored; }});
    }

    const OwnParametersPanel& panel() const { return editor->panel(); }

    std::string faults() const
    {
        std::string text;
        for (const ParameterFault& fault : panel().faults)
            text += faultText(fault) + "; ";
        return text;
    }

    std::string saved() const
    {
        std::string text;
        const OwnParameters table = file.load();
        for (const OwnParameterPointer& own : table.all())
            text += std::to_string(own->number) + " " + own->name + " " + own->request + " " + own->formula +
                    "; ";
        return text;
    }

    /// Types a parameter that can be used.
    void add(const std::string& name, const std::string& request)
    {
        editor->addNew();
        editor->type(&OwnParameter::name, name);
        editor->type(&OwnParameter::request, request);
        editor->leaveField();
    }
};

TEST_F(OwnParameterEditorTest, SavesAParameterAsSoonAsItCanBeUsed)
{
    EXPECT_FALSE(panel().current);
    editor->addNew();
    editor->addNew(); // nothing was typed
    EXPECT_EQ(panel().list, std::vector<std::string>{"New parameter (not saved)"});
    EXPECT_EQ(faults(), "request, at character 1: the request is missing; ");
    editor->type(&OwnParameter::name, "Oil");
    editor->type(&OwnParameter::request, "22 19 40");
    editor->type(&OwnParameter::formula, "  A-VAL(B)");
    EXPECT_EQ(panel().faults.at(0).position, 4U) << "in what was typed";
    editor->leaveField();
    EXPECT_EQ(saved(), "");
    editor->type(&OwnParameter::formula, "A-40");
    editor->typeRange(&OwnParametersPanel::minimum, "-40");
    EXPECT_EQ(faults(), "minimum and maximum are numbers, such as -40 and 215, or both empty; ");
    editor->typeRange(&OwnParametersPanel::maximum, "2,5");
    editor->leaveField();
    EXPECT_EQ(saved() + panel().statusBox + panel().fields.request,
              "10000 Oil 221940 A-40; \"Oil\" saved221940");
    EXPECT_EQ(file.load().all().at(0)->maximum, 2.5);
    editor->leaveField();

    add("Second", "2101");
    editor->copy();
    EXPECT_EQ(saved(), "10000 Oil 221940 A-40; 10001 Second 2101 A; 10002 Second 2 2101 A; ");
    editor->type(&OwnParameter::name, "OIL");
    prompts.answer = false;
    editor->select(0);
    EXPECT_EQ(prompts.question,
              "Own Parameters\n\"OIL\" can't be saved: name, at character 1: there is another "
              "parameter of this name.\r\n\r\nForget what was typed?");
    EXPECT_EQ(panel().current, 2U);
    prompts.answer = true;
    editor->select(0);
    EXPECT_EQ(panel().hint, "Number 10000, not used in this design");

    uses = 2;
    prompts.answer = true;
    editor->remove();
    EXPECT_TRUE(
        prompts.question.ends_with("Delete \"Oil\" (221940)?\r\n\r\nThe present design uses it: 2 rows give "
                                   "no values then."));
    add("Third", "2102");
    EXPECT_EQ(saved(), "10001 Second 2101 A; 10002 Second 2 2101 A; 10003 Third 2102 A; ")
        << "no number is given twice";
    EXPECT_TRUE(editor->leave());
    folder.write(file.path(), "rubbish");
    editor->type(&OwnParameter::name, "Fourth");
    EXPECT_THROW(editor->leaveField(), FileError);
    prompts.answer = true;
    EXPECT_TRUE(editor->leave()) << "the dialog is no trap";
    EXPECT_TRUE(prompts.question.ends_with("line 1 is no JSON.\r\n\r\nForget what was typed?"));
}

TEST_F(OwnParameterEditorTest, TriesRepliesThatAreTypedOrRead)
{
    add("Oil", "221940");
    editor->type(&OwnParameter::unit, "°C");
    editor->type(&OwnParameter::formula, "A/(B-1)");
    editor->typeReply("62 19 40 5A 03");
    EXPECT_EQ(panel().outcome, "Data 5A 03: 45 °C");
    editor->typeReply("62 19 40 5A 01");
    EXPECT_EQ(panel().outcome + (panel().hasValue ? "!" : ""), "Data 5A 01: division by zero");
    editor->typeRange(&OwnParametersPanel::minimum, "0");
    editor->typeRange(&OwnParametersPanel::maximum, "10");
    editor->typeReply("NO DATA");
    EXPECT_EQ(panel().outcome, "the vehicle has not answered (NO DATA)");

    editor->type(&OwnParameter::header, "18DA10F1");
    editor->type(&OwnParameter::filter, "18daf110");
    adapter.expectOpening();
    for (const char* command : {"ATCP 18\r", "ATSH DA10F1\r", "ATCRA 18DAF110\r"})
        adapter.expect(command).answer("OK\r\r>");
    adapter.expect("221940\r").answer("62 19 40 5A 03 \r\r>");
    adapter.expect("ATD\r");
    editor->readFromCar();
    EXPECT_FALSE(panel().canRead);
    adapter.play();
    EXPECT_EQ(panel().reply + ": " + panel().outcome,
              "62 19 40 5A 03: Data 5A 03: 45 °C (outside of its range)");
    EXPECT_EQ(panel().statusBox, "com1 Closed");

    adapter.expectOpening();
    adapter.expect("ATCP 18\r").answer("?\r\r>");
    adapter.expect("ATD\r");
    editor->readFromCar();
    adapter.play();
    EXPECT_EQ(prompts.takeMessage(), "The adapter does not take ATCP 18 (?). Check header and filter.");
    adapter.expect("ATZ\r");
    adapter.expect("ATD\r");
    editor->readFromCar();
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(), AdapterLink::notRespondingText);
    EXPECT_TRUE(panel().canRead);
    adapter.expect("ATZ\r");
    adapter.expect("ATD\r");
    editor->readFromCar();
    editor->copy();
    EXPECT_TRUE(panel().canRead) << "the reply would be another one's";
    editor->type(&OwnParameter::header, "7");
    editor->readFromCar();
    EXPECT_EQ(prompts.takeMessage(),
              "There is nothing to ask yet: header, at character 2: it has 3, 6 or 8 digits, or none");
}

TEST_F(OwnParameterEditorTest, ImportsAndExportsWhatOthersUse)
{
    add("Oil", "221940");
    editor->type(&OwnParameter::filter, "7E8");
    editor->leaveField();
    const std::string head = "Name,ShortName,ModeAndPID,Equation,Min Value,Max Value,Units,Header\n";
    dialogs.chosen = folder.path("in.csv");
    folder.write(dialogs.chosen,
                 head + "Oil,,221940,A-40,0,0,C,\nGear,,2101,B,0,0,,\nBad,,2102,VAL(1),0,0,,\n");
    prompts.answer = false;
    editor->importFile();
    EXPECT_TRUE(prompts.question.ends_with("other meanings:\r\n   Oil\r\n\r\nReplace yours?"));
    EXPECT_EQ(saved(), "10000 Oil 221940 A; 10001 Gear 2101 B; ");
    EXPECT_NE(prompts.takeMessage().find("\r\nline 4, \"Bad\": "), std::string::npos);
    EXPECT_EQ(values.parmInitDir, folder.path());

    editor->addNew();
    editor->onChanged = [this] { ++stored; };
    stored = 0;
    editor->importFile(); // which the user gives up
    EXPECT_EQ(panel().list, (std::vector<std::string>{"Oil", "Gear"}));
    EXPECT_EQ(stored, 1) << "the new one has gone, and the window shows so";

    dialogs.chosen = folder.path("out.csv");
    editor->exportFile();
    EXPECT_TRUE(contents(folder.path("out.csv")).find("Gear") != std::string::npos);
    EXPECT_TRUE(panel().statusBox.starts_with("out.csv saved; the receive filters of 1 "))
        << panel().statusBox;
    dialogs.chosen = folder.path("in.csv");
    prompts.answer = true;
    editor->importFile();
    prompts.takeMessage();
    EXPECT_EQ(saved(), "10000 Oil 221940 A-40; 10001 Gear 2101 B; ");
}

} // namespace
} // namespace zint
