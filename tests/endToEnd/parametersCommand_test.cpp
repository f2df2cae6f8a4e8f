#include "endToEnd/programs.h"

namespace zint {
namespace {

struct ParametersCommandEndToEnd : testing::Test {
    TemporaryFolder folder;
    std::string table = folder.path("Größen.json");

    Outcome parameters(QStringList arguments) const
    {
        return runZint(QStringList{u"parameters"_qs} + arguments + QStringList{u"--file"_qs, toQt(table)});
    }
};

TEST_F(ParametersCommandEndToEnd, ImportsSearchesTriesAndExports)
{
    const std::string csv = folder.path("out.csv");
    EXPECT_EQ(
        parameters({u"import"_qs, toQt(ZINT_PARAMETERS "/diesel.csv")}).all(),
        "1|19 parameters added, 1 refused\n|zint-obd: line 21, \"Formelfehler\": formula, at character 1: "
        "there is no function LOOKUP\n");
    EXPECT_EQ(parameters(words("search egt 4A11")).all(), // in the short name and in the request
              "0|10003  224A11  Abgastemperatur nach Kat  °C  (A*256+B)*0.1-40\n|");
    EXPECT_EQ(parameters({u"try"_qs, u"Öltemperatur"_qs, u"61 01 82"_qs}).all(), "0|90 °C\n|");
    EXPECT_EQ(parameters(words("try 10015 61 01 FF")).all(),
              "0|215 °C\n|zint-obd: the value lies outside of the range of this parameter\n");
    EXPECT_EQ(parameters(words("try 10015 --formula B A0 32")).status, 1) << "a number is no byte";
    EXPECT_EQ(parameters({u"export"_qs, toQt(csv)}).all(), "0|19 parameter(s) exported\n|");
    EXPECT_EQ(parameters({u"import"_qs, toQt(csv)}).all(), "0|0 parameters added, 19 already there\n|");
    EXPECT_EQ(parameters(words("remove 10000 Einspritzmenge")).all(), "0|2 parameter(s) removed\n|");
    expectFailure(parameters(words("remove Einspritzmenge")), "there is no parameter \"Einspritzmenge\"");
    EXPECT_EQ(parameters(words("add Oil 221940 A-40 --header 7E1 --unit C")).all(),
              "0|10019  221940  7E1  Oil  C  A-40\n|");
    EXPECT_EQ(parameters({u"add"_qs, u"Oil 2"_qs, u"2210"_qs, u" 2*(A+VAL(B))"_qs}).all(),
              "1||zint-obd: formula, at character 6: there is no function VAL\n  2*(A+VAL(B))\n       ^\n");
    EXPECT_EQ(parameters(words("search 0105 coolant --imperial")).all(),
              "0|5050  0105  Coolant temperature  °F  -40 to 419\n|");
    EXPECT_TRUE(parameters(words("export -")).output.ends_with("\nOil,,0x221940,A-40,0,0,C,7E1\n"));
}

} // namespace
} // namespace zint
