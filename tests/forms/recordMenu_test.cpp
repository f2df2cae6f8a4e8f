#include "forms/formTest.h"
#include "launcher/window/failedConnForm.h"

#include <QAction>
#include <QFileDialog>
#include <QListWidget>

namespace zint {
namespace {

/// The entries under Help of any window, and the buttons that do the same.
struct RecordMenuTest : FormTest {
    /// Answers whether the identity is left out, and where the transcript goes.
    void answerNext(int row, const std::string& path)
    {
        inNextDialog([=](QDialog& question) {
            question.findChild<QListWidget*>()->setCurrentRow(row);
            inNextDialog([=](QDialog& dialog) {
                qobject_cast<QFileDialog*>(&dialog)->selectFile(toQt(path));
                dialog.accept();
            });
            question.accept();
        });
    }

    std::string shownState()
    {
        const auto* mark = control<QLabel>("recordingLab");
        return fromQt(control<QAction>("mnuRecord")->text() + u'|' +
                      (mark->isVisible() ? mark->text() : QString()));
    }
};

TEST_F(RecordMenuTest, RecordsAndSavesWhatTheUserChooses)
{
    const auto path = [this](int number) { return folder.path("car" + std::to_string(number)) + ".txt"; };
    open<startForm>(context);
    EXPECT_EQ(messageBy("mnuSaveExchange"), "Nothing has been sent to an adapter yet.");
    wireRecord.opened("com1");
    wireRecord.written("0902\r");
    answerNext(0, path(1));
    click("mnuSaveExchange");
    EXPECT_TRUE(contents(path(1)).starts_with("masked"));
    EXPECT_EQ(values.parmInitDir, folder.path());
    EXPECT_EQ(shownState(), "&Record Transcript...|");
    answerNext(1, path(2));
    click("mnuRecord");
    EXPECT_EQ(shownState(), "Stop &Recording|Recording ");
    clock.now += std::chrono::seconds(1);
    wireRecord.received("NO DATA\r\r>");
    EXPECT_TRUE(contents(path(2)).ends_with("NO DATA\r\n\r\n>\r\n"));
    const QString ended = messageOf([this] {
        wireRecord.written(std::string(3000, 'A')); // more than the file may hold
        wireRecord.closed();
        waitUntil([this] { return shownState() == "&Record Transcript...|"; });
    });
    EXPECT_TRUE(ended.endsWith(u"is large by now. The recording has ended.")) << fromQt(ended);
    open<failedConnForm>(context);
    answerNext(1, path(3));
    click("saveExchange");
    EXPECT_TRUE(contents(path(3)).starts_with("# Zint "));
}

} // namespace
} // namespace zint
