#include "app/portsForm.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"

#include <QComboBox>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace zint {
namespace {

class PortsFormTest : public testing::Test {
protected:
    QComboBox* chooser(const portsForm& form, int number)
    {
        return form.findChild<QComboBox*>(QStringLiteral("assigned%1").arg(number));
    }

    MemorySettings settings;
    FixedPortList system;
    PortDirectory directory{settings, system};
};

TEST_F(PortsFormTest, AssignsWhatWasChosenOrTyped)
{
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", "0403:6001"}};
    directory.assign(4, "/dev/old");
    portsForm form(directory, nullptr);
    const auto* list = form.findChild<QTreeWidget*>(QStringLiteral("detectedPorts"));
    EXPECT_EQ(list->topLevelItem(0)->text(2), u"0403:6001");
    EXPECT_EQ(chooser(form, 1)->currentText(), u"Automatic");
    EXPECT_EQ(chooser(form, 4)->currentText(), u"/dev/old");

    chooser(form, 1)->setCurrentText(QStringLiteral("Simulated vehicle"));
    chooser(form, 2)->setCurrentText(QStringLiteral("/dev/ttyUSB0 - FT232R USB UART"));
    chooser(form, 3)->setCurrentText(QStringLiteral("  /dev/rfcomm0 "));
    chooser(form, 4)->setCurrentText(QString());
    form.accept();

    EXPECT_TRUE(directory.target(1).isSimulated());
    EXPECT_EQ(directory.assignment(2), "/dev/ttyUSB0");
    EXPECT_EQ(directory.assignment(3), "/dev/rfcomm0");
    EXPECT_EQ(directory.assignment(4), "");
    EXPECT_FALSE(settings.has("Ports", "com5"));
}

TEST_F(PortsFormTest, CancellingChangesNothing)
{
    portsForm form(directory, nullptr);
    chooser(form, 1)->setCurrentText(QStringLiteral("/dev/rfcomm0"));
    form.reject();
    EXPECT_EQ(directory.assignment(1), "");
}

} // namespace
} // namespace zint
