#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <string_view>

#include "dravlink/simulator_fixture.h"

namespace dravlink::testing {
namespace {

namespace fs = std::filesystem;
using kw::automation::CBool;
using kw::automation::CLng;
using kw::automation::Failure;
using Names = std::vector<std::string>;

const std::string kLab = "Engineering Lab";
const std::string kCorporate = "Ostvarra Corporate";

// Rows in the client's save shape from row `first` on, their cells from column 0; the rest empty.
Variant SaveRows(std::int32_t first, std::int32_t lastColumn, const std::vector<Names>& rows) {
    const auto n = static_cast<std::int32_t>(rows.size());
    auto save =
        SafeArray::TwoDim(first, first + (n - 1), 0, lastColumn, SafeArray::ElementType::String);
    for (std::int32_t r = 0; r < n; ++r) {
        const Names& row = rows[static_cast<std::size_t>(r)];
        for (std::size_t c = 0; c < row.size(); ++c)
            save.Set(first + r, static_cast<std::int32_t>(c), Variant(row[c]));
    }
    return Variant(save);
}

// The rows of a dial list, reversed and all ticked off: number, ISP, position, enabled.
Variant ReversedAndOff(const Variant& dialList) {
    const auto numbers = Column(dialList, 1);
    const auto isps = Column(dialList, 2);
    std::vector<Names> rows;
    for (std::size_t i = numbers.size(); i-- > 0;)
        rows.push_back({numbers[i], isps[i], std::to_string(rows.size()), "0"});
    return SaveRows(0, 8, rows);
}

TEST_F(SimulatorTest, NothingButTheUserCallsWorksBeforeLogon) {
    Simulator engine(platform_, Options{dataDir_, {}, ""});
    Variant list;
    EXPECT_EQ(FailureOf([&] { engine.GetPhoneList(list); }).Number(), 1010);
}

TEST_F(SimulatorTest, AnAccountChecksItsPasswordAndAnyoneElseMayLogOn) {
    Simulator engine(platform_, Options{dataDir_, {}, ""});
    const auto logon = [&](std::string user, std::string password) {
        return CBool(engine.Logon(user, password, ""));
    };
    EXPECT_FALSE(logon("guest", "wrong"));
    EXPECT_TRUE(logon("guest", "guest"));
    EXPECT_TRUE(logon("mira", "whatever"));
    Variant list;
    EXPECT_TRUE(CBool(engine.GetPhoneList(list)));
    EXPECT_EQ(CStr(list.ToArray().Get(0)), kCorporate);
}

TEST_F(SimulatorTest, ANewLocationNeedsAFreeName) {
    Start();
    EXPECT_FALSE(CBool(engine_->LocationExists("Home Office"))) << "false: the name is taken";
    EXPECT_FALSE(CBool(engine_->LocationExists(" home office ")));
    EXPECT_TRUE(CBool(engine_->LocationExists("  Denver Hotel ")));
    Variant list;
    engine_->GetLocationList(list);
    EXPECT_EQ(list.ToArray().UBound(), 2) << "not listed before CreateLocation";
}

TEST_F(SimulatorTest, OnlyKnownLocationPropertiesWithValidValuesAreSet) {
    Start();
    const struct {
        const char* key;
        const char* value;
        bool taken;
    } cases[] = {{"AreaCode", "303", true},     {"Colour", "red", false},
                 {"CountryCode", "one", false}, {"CountryCode", "44", true},
                 {"TunnelOverLAN", "2", false}, {"ManualDial", "1", true}};
    for (const auto& c : cases) {
        EXPECT_EQ(CBool(engine_->SetLocationProperty("Home Office", c.key, c.value)), c.taken)
            << c.key << " = " << c.value;
    }
}

TEST_F(SimulatorTest, ADeletedLocationFreesItsNameForGood) {
    Start();
    engine_->LocationExists("Denver Hotel");
    ASSERT_TRUE(CBool(engine_->CreateLocation("Denver Hotel")));
    engine_->DeleteLocation("Denver Hotel");
    Start();
    EXPECT_TRUE(CBool(engine_->LocationExists("Denver Hotel")));
}

// Created locations outlive the engine, each in its user's own file.
TEST_F(SimulatorTest, EachUserKeepsLocationsOfTheirOwn) {
    Start("", "ana", "secret");
    engine_->LocationExists("Denver Hotel");
    ASSERT_TRUE(CBool(engine_->CreateLocation("Denver Hotel")));
    Start("", "mira", "any");
    std::string value;
    EXPECT_FALSE(CBool(engine_->GetLocationProperty("Denver Hotel", "AreaCode", value)));
    EXPECT_TRUE(CBool(engine_->LocationExists("Denver Hotel"))) << "free for another user";
    Start("", "ana", "secret");
    EXPECT_FALSE(CBool(engine_->LocationExists("Denver Hotel")));
}

TEST_F(SimulatorTest, ReadOnlyLocationsRefuseEveryWrite) {
    Start();
    ASSERT_TRUE(CBool(engine_->SaveLocation("Home Office")));  // the user's own file now exists
    fs::permissions(dataDir_ / "locations-ana.ini", fs::perms::owner_read);
    EXPECT_FALSE(CBool(engine_->SetLocationProperty("Home Office", "AreaCode", "303")));
    EXPECT_FALSE(CBool(engine_->SaveLocation("Home Office")));
    EXPECT_FALSE(CBool(engine_->SetLocationProperty("Nowhere", "AreaCode", "303")));
    fs::permissions(dataDir_ / "locations-ana.ini", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(CBool(engine_->SetLocationProperty("Home Office", "AreaCode", "303")));
}

// A write the engine cannot make (a folder took the file's place) fails the operation with a
// classic file error number, the way the client handles any failure of the engine.
TEST_F(SimulatorTest, AWriteTheEngineCannotMakeFailsTheOperationNamingTheFile) {
    Start();
    std::string card = "0";
    const std::pair<std::function<void()>, std::string> writes[] = {
        {[&] { engine_->RefreshISPList(kLab); }, "orderings.ini"},
        {[&] { engine_->SetCallingCardNumber(card, "555"); }, "callingcards.txt"},
    };
    for (const auto& [write, file] : writes) {
        fs::remove(dataDir_ / file);
        fs::create_directories(dataDir_ / file);
        const Failure f = FailureOf(write);
        EXPECT_EQ(f.Number(), kw::automation::err::kPathFileAccess) << file;
        EXPECT_NE(f.Description().find(file), std::string::npos) << f.Description();
    }
}

// A user's damaged locations fail their logon as the engine's failure, and leave the engine as it
// was: the user still logged on keeps saving to their own file, never to the damaged one.
TEST_F(SimulatorTest, AnUnreadableLocationsFileFailsTheLogonAndChangesNothing) {
    Start();
    const std::string damaged = "[Home]\nColour = red\n";
    std::ofstream(dataDir_ / "locations-bo.ini") << damaged;
    std::string user = "bo", password = "x";
    const Failure f = FailureOf([&] { engine_->Logon(user, password, ""); });
    EXPECT_NE(f.Description().find("locations-bo.ini, line 2"), std::string::npos)
        << f.Description();
    EXPECT_TRUE(CBool(engine_->SaveLocation("Home Office")));
    std::ifstream in(dataDir_ / "locations-bo.ini");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), damaged);
    EXPECT_TRUE(fs::exists(dataDir_ / "locations-ana.ini"));
}

TEST_F(SimulatorTest, ACallingCardKeepsTheNumberSetForIt) {
    Start();
    std::string position = "1";
    EXPECT_TRUE(CBool(engine_->SetCallingCardNumber(position, "4417 2231 9981")));
    Start();
    Variant list;
    engine_->GetCallingCardList(list);
    EXPECT_EQ(CStr(list.ToArray().Get(1, 2)), "4417 2231 9981");
}

TEST_F(SimulatorTest, ACardPositionThatNamesNoCardIsRefused) {
    Start();
    for (std::string position : {"99", "-1", "1x", "", "184467440737095516160"})
        EXPECT_FALSE(CBool(engine_->SetCallingCardNumber(position, "1"))) << position;
}

TEST_F(SimulatorTest, AUsLocationGetsItsOwnAreasPopsFirstThenTollFreeThenTheRest) {
    Start();
    const Variant rows = DialList("New York Hotel", kCorporate);
    const auto numbers = Column(rows, 1);
    ASSERT_GE(numbers.size(), 5u);
    EXPECT_EQ(numbers[0].substr(0, 3), "212");
    EXPECT_EQ(numbers[1].substr(0, 3), "212");
    EXPECT_EQ(numbers[2], "800-555-0100") << "toll-free next";
    for (const auto& n : numbers)
        EXPECT_EQ(n.find(' '), std::string::npos) << "no POP abroad while the country has its own";
    // Enable flags as the database says; weights rise down the list.
    const auto miami = std::find(numbers.begin(), numbers.end(), "305-555-0199");
    ASSERT_NE(miami, numbers.end());
    EXPECT_EQ(Column(rows, 6)[static_cast<std::size_t>(miami - numbers.begin())], "0");
    const auto weights = Column(rows, 7);
    EXPECT_LT(std::stoi(weights.front()), std::stoi(weights.back()));
}

TEST_F(SimulatorTest, AnIspListSavedWithAnIspOffLeavesItsPopsOutOfTheDialList) {
    Start();
    const auto isps = [&](int column) {
        Variant list;
        engine_->GetISPList(kLab, list);
        return Column(list, column);
    };
    const Names names = isps(0);
    ASSERT_EQ(names, (Names{"Bluewave Online", "Meridian Dial"}));
    Variant save = SaveRows(0, 6, {{"Meridian Dial", "1", "0"}, {"Bluewave Online", "0", "1"}});
    ASSERT_TRUE(CBool(engine_->SaveISPList(kLab, save)));
    EXPECT_EQ(isps(0), (Names{"Meridian Dial", "Bluewave Online"}));
    EXPECT_EQ(isps(3), (Names{"1", "0"}));
    for (const auto& isp : Column(DialList("Home Office", kLab), 2))
        EXPECT_EQ(isp, "Meridian Dial");
    EXPECT_TRUE(CBool(engine_->RefreshISPList(kLab)));
    EXPECT_EQ(isps(0), names);
}

TEST_F(SimulatorTest, AnIspListWhoseRowsEndAtTheTopOfTheIndexRangeIsSavedWhole) {
    Start();
    Variant save = SaveRows(std::numeric_limits<std::int32_t>::max() - 1, 6,
                            {{"Meridian Dial", "1"}, {"Bluewave Online", "0"}});
    ASSERT_TRUE(CBool(engine_->SaveISPList(kLab, save)));
    Variant isps;
    engine_->GetISPList(kLab, isps);
    EXPECT_EQ(Column(isps, 0), (Names{"Meridian Dial", "Bluewave Online"}));
}

TEST_F(SimulatorTest, EachUserKeepsTheirOwnSavedDialList) {
    Start("", "ana");
    auto computed = Column(DialList("Home Office", kCorporate), 1);
    Variant list = ReversedAndOff(DialList("Home Office", kCorporate));
    ASSERT_TRUE(CBool(engine_->SavePOPList("Home Office", kCorporate, list)));
    Start("", "bob");
    EXPECT_EQ(Column(DialList("Home Office", kCorporate), 1), computed);
    Start("", "ana");
    std::reverse(computed.begin(), computed.end());
    EXPECT_EQ(Column(DialList("Home Office", kCorporate), 1), computed);
}

TEST_F(SimulatorTest, AUserWithoutTheRightsChangesNeitherListsNorLoginsNorCards) {
    Start("", "guest", "guest");
    const Variant computed = DialList("Home Office", kCorporate);
    Variant pops = ReversedAndOff(computed);
    EXPECT_FALSE(CBool(engine_->SavePOPList("Home Office", kCorporate, pops)));
    Variant isps = SaveRows(0, 6, {{"Meridian Dial", "0"}});
    EXPECT_FALSE(CBool(engine_->SaveISPList(kLab, isps)));
    std::string user = "guest", isp = "Bluewave Online", card = "1";
    EXPECT_FALSE(CBool(engine_->SetISPLogin(user, isp, "g1", "pw")));
    EXPECT_FALSE(CBool(engine_->SetCallingCardNumber(card, "0000"))) << "CCdialing is 0";
    EXPECT_EQ(Column(DialList("Home Office", kCorporate), 1), Column(computed, 1));
    EXPECT_EQ(Column(DialList("Home Office", kCorporate), 6), Column(computed, 6));
}

TEST_F(SimulatorTest, DialListRequestsThatCannotBeServedSayWhy) {
    Start();
    EXPECT_EQ(CLng(engine_->BuildDialList("Atlantis", "Ostvarra Corporate")), 3);
    EXPECT_EQ(CLng(engine_->BuildDialList("Home Office", "Nowhere")), 4);
    engine_->SetLocationProperty("Home Office", "AreaCode", "");
    EXPECT_EQ(FailureOf([&] { engine_->BuildDialList("Home Office", kCorporate); }).Number(), 1020)
        << "a US location needs an area code";
}

TEST_F(SimulatorTest, OverAnExistingConnectionNothingIsDialled) {
    Start();
    engine_->SetLocationProperty("Home Office", "TunnelOverLAN", "1");
    EXPECT_TRUE(DialList("Home Office", kCorporate).IsEmpty());
    Hangup(Call(kLab, 5000));
    EXPECT_EQ(sink_.Codes(), (std::vector<int>{202, 201, 1, 232, 231, 31, 32}));
}

// Each data file has its own loader; whichever fails, the start fails naming file and line.
TEST_F(SimulatorTest, AMalformedDataFileStopsTheStartNamingTheFileAndTheLine) {
    using namespace std::string_view_literals;
    constexpr std::string_view kFolder = "(a folder)";
    const std::string longLine = "[Engine]\n" + std::string(10 << 20, 'x') + "\n";
    const struct {
        const char* file;
        std::string_view content;
        std::vector<std::string> told;
    } cases[] = {
        {"isps.txt", "# ok\nBluewave\0 Online | 1 | w | 1 | 1\n"sv, {"isps.txt, line 2", "NUL"}},
        {"countries.txt", "# none yet\n\n", {"countries.txt, line 2", "no country"}},
        {"engine.ini", longLine, {"engine.ini, line 2", "found \"xxxx"}},
        {"countries.txt", kFolder, {"countries.txt is a folder"}},
        {"pops.txt", "# a\n\nBluewave Online | 1 | 5\n", {"pops.txt, line 3", "9 fields"}},
        {"pops.txt", "Nobody Net|1|5|5|A|B|C|1|1\n", {"pops.txt, line 1", "Nobody Net"}},
        {"accounts.ini", "[*]\nPassword = *\nPOPordering\n", {"accounts.ini, line 3"}},
        {"accounts.ini", "[*]\nColour = red\n", {"accounts.ini, line 2", "policy key"}},
        {"isps.txt", "Bluewave Online | 1 | w | 2 | 1\n", {"isps.txt, line 1", "1 or 0"}},
        {"phonebook.ini", "[Lab]\nType = Modem\n", {"phonebook.ini, line 1", "ISP, VPN or Both"}},
        {"phonebook.ini", "\n[Lab]\nISPs = Nobody Net\n", {"phonebook.ini, line 2", "Nobody Net"}},
        {"locations.ini", "[Home]\nCountryCode = one\n", {"locations.ini, line 1", "CountryCode"}},
        {"locations.ini", "[Home]\nColour = red\n", {"locations.ini, line 2", "Colour"}},
        {"countries.txt", "X | one | XX | 1 | 1\n", {"countries.txt, line 1", "the code"}},
        {"callingcards.txt", "a | b | | c | d\n", {"callingcards.txt, line 1", "the card id"}},
        {"orderings.ini", "[POP Home|Lab]\nRow = 1 | 2\n", {"orderings.ini, line 2", "POP row"}},
        {"orderings.ini", "[Mine]\n", {"orderings.ini, line 1", "POP or ISP"}},
        {"engine.ini", "[Engine]\nScenario = meteor-strike\n", {"engine.ini", "meteor-strike"}},
        {"engine.ini", "[Engine]\nDialListDelay = soon\n", {"engine.ini, line 2", "whole number"}},
        {"engine.ini", "[Engine]\n\nDialListDelay = -5\n", {"engine.ini, line 3", "negative"}},
        {"phonebook.ini", "[Lab]\nScenario = meteor-strike\n", {"[Lab]", "meteor-strike"}},
    };
    for (const auto& c : cases) {
        fs::remove_all(dataDir_);  // the other files come from the sample
        fs::create_directories(dataDir_);
        if (c.content == kFolder)
            fs::create_directories(dataDir_ / c.file);
        else
            std::ofstream(dataDir_ / c.file)
                .write(c.content.data(), static_cast<std::streamsize>(c.content.size()));
        const Failure f = FailureOf([&] { Simulator(platform_, Options{dataDir_, {}, ""}); });
        EXPECT_EQ(f.Number(), 429) << "the engine must not start on half its data: " << c.told[0];
        EXPECT_LT(f.Description().size(), 500u) << "a screenful says where the damage is";
        for (const auto& part : c.told)
            EXPECT_NE(f.Description().find(part), std::string::npos) << f.Description();
    }
}

}  // namespace
}  // namespace dravlink::testing
