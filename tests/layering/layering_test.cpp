// The layers of the source tree, checked on every build: which folders may include what.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Prefixes = std::vector<std::string>;

struct Include {
    std::string where;  // file:line, relative to src/
    std::string target;
    bool angled = false;
};

// Every include of the files under src/<part>: a folder, or one file's path without extension.
std::vector<Include> IncludesOf(const std::string& part) {
    static const std::regex kInclude(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    const fs::path src = fs::path(KW_SOURCE_DIR) / "src";
    std::vector<fs::path> files = {src / (part + ".h"), src / (part + ".cpp")};
    if (fs::is_directory(src / part)) {
        files.assign(fs::recursive_directory_iterator(src / part), {});
    }
    std::vector<Include> found;
    for (const fs::path& file : files) {
        if (file.extension() != ".h" && file.extension() != ".cpp")
            continue;
        std::ifstream in(file);  // a missing file reads as nothing
        std::string text;
        for (int line = 1; std::getline(in, text); ++line) {
            std::smatch m;
            if (std::regex_search(text, m, kInclude)) {
                found.push_back({fs::relative(file, src).generic_string() + ":" +
                                     std::to_string(line) + " includes " + m[2].str(),
                                 m[2].str(), m[1] == "<"});
            }
        }
    }
    return found;
}

bool StartsWithAny(const std::string& s, const Prefixes& prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](const std::string& p) { return s.rfind(p, 0) == 0; });
}

bool IsQt(const Include& inc) {
    static const std::regex kQt(R"(^(Q[A-Za-z]|qt|Qt))");
    return std::regex_search(inc.target, kQt) ||
           (!inc.angled && inc.target.rfind("platform/qt/", 0) == 0);
}

Prefixes Join(Prefixes a, const Prefixes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct Rule {
    const char* name;
    Prefixes parts;
    Prefixes allowed;  // project includes ("..."); empty: any
    Prefixes forbidden;
    bool forbidQt = true;  // angled includes are checked for the toolkit only
};

void PrintTo(const Rule& rule, std::ostream* os) {
    *os << rule.name;
}

const Prefixes kContract = {"client/ui/dialer/engine/dravlink",
                            "client/ui/dialer/engine/engine_factory"};
const Prefixes kCoreHelpers = {"client/ui/dialer/core/event_manager",
                               "client/ui/dialer/core/settings", "client/ui/dialer/core/utilities",
                               "client/ui/dialer/core/file_table"};

const Rule kRules[] = {
    {"ProgramIncludesNoToolkitNorEngineImplementation",
     {"client"},
     {},
     {"platform/qt/", "platform/headless/", "dravlink/", "link/"}},
    {"StdOnlyPlatformIncludesNoToolkit",
     {"platform/automation", "platform/forms", "platform/registry", "platform/headless"},
     {"platform/automation/", "platform/forms/", "platform/registry/", "platform/headless/"},
     {}},
    {"ContractIncludesOnlyValuesAndSettings",
     kContract,
     Join({"platform/automation/", "platform/registry/"}, kContract),
     {}},
    {"CoreHelpersIncludeOnlyThePlatform",
     kCoreHelpers,
     Join({"platform/automation/", "platform/forms/", "platform/registry/"}, kCoreHelpers),
     {}},
    // The link carries the contract for any engine: it knows neither the program's forms nor the
    // simulator, and the simulator does not know it is served over a bus.
    {"LinkCarriesTheContractOnly",
     {"link"},
     Join({"link/", "platform/automation/", "platform/forms/"}, kContract),
     {},
     false},
    {"SimulatorKnowsNoLink", {"dravlink"}, {}, {"link/", "platform/qt/"}},
};

class Layering : public ::testing::TestWithParam<Rule> {};

TEST_P(Layering, HoldsForEveryInclude) {
    const Rule& rule = GetParam();
    int checked = 0;
    for (const std::string& part : rule.parts) {
        for (const Include& inc : IncludesOf(part)) {
            ++checked;
            EXPECT_FALSE(rule.forbidQt && IsQt(inc)) << inc.where;
            if (!inc.angled) {
                EXPECT_FALSE(StartsWithAny(inc.target, rule.forbidden)) << inc.where;
                EXPECT_TRUE(rule.allowed.empty() || StartsWithAny(inc.target, rule.allowed))
                    << inc.where;
            }
        }
    }
    // A rule over files that moved away would pass for nothing.
    EXPECT_GT(checked, 0) << "no file to check";
}

INSTANTIATE_TEST_SUITE_P(SourceTree, Layering, ::testing::ValuesIn(kRules),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
