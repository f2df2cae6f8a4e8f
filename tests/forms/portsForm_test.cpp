#include "forms/formTest.h"
#include "launcher/window/portsForm.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QTreeWidget>

namespace zint {
namespace {

using PortsFormTest = FormTest;

TEST_F(PortsFormTest, AssignsWhatWasChosenOrTypedUnlessCancelled)
{
    for (const PortNumber port : {PortNumber{4}, PortNumber{7}})
        ports.assign(port, "/dev/old");
    for (const PortNumber port : {PortNumber{5}, PortNumber{6}})
        ports.assignForThisRun(port, "/dev/run");
    auto* dialog = new portsForm(ports, nullptr);
    (form = dialog)->show();
    EXPECT_EQ(control<QComboBox>("assigned1")->currentText(), u"Automatic (nothing connected)");
    QTest::keyClicks(control<QComboBox>("assigned8")->lineEdit(), u"x"_qs);
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", "0403:6001"}, {"/dev/ttyS0", "", ""}};
    auto* detected = control<QTreeWidget>("detectedPorts");
    EXPECT_TRUE(waitUntil([detected] { return detected->topLevelItem(0)->text(2) == u"0403:6001"; }));
    EXPECT_EQ(control<QComboBox>("assigned1")->currentText(), u"Automatic (/dev/ttyUSB0 - FT232R USB UART)");

    const std::pair<const char*, const char*> typed[] = {{"assigned1", "SIMULATED vehicle"},
                                                         {"assigned2", "/dev/ttyUSB0 - FT232R USB UART"},
                                                         {"assigned3", "  /dev/t "},
                                                         {"assigned4", "automatic"}};
    for (const auto& [name, text] : typed) {
        control<QComboBox>(name)->lineEdit()->selectAll();
        QTest::keyClicks(control<QComboBox>(name)->lineEdit(), QLatin1String(text));
    }
    QTest::keyClick(control<QComboBox>("assigned5"), Qt::Key_F4);
    QTest::keyClick(control<QComboBox>("assigned5")->view(), Qt::Key_Return); // as it is, to keep it
    dialog->reject();
    EXPECT_EQ(ports.assignment(PortNumber{1}), "");
    dialog->accept();
    const char* const expected[] = {
        "simulated", "/dev/ttyUSB0",
        "/dev/t",    "",
        "/dev/run",  "",
        "/dev/old",  "Automatic (nothing connected)x"}; // typed before a port came
    for (int number = 1; number <= 8; ++number)
        EXPECT_EQ(ports.assignment(PortNumber{number}), expected[number - 1]) << number;
}

} // namespace
} // namespace zint
