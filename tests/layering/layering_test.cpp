// The layers of the source tree, checked on every build: which folders may include what.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Include {
    std::string file;  // relative to src/
    int line = 0;
    std::string target;
    bool angled = false;
};

bool IsSource(const fs::path& path) {
    const auto ext = path.extension();
    return ext == ".h" || ext == ".cpp";
}

std::vector<Include> IncludesOf(const fs::path& file, const fs::path& src) {
    static const std::regex kInclude(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::vector<Include> found;
    std::ifstream in(file);
    std::string text;
    for (int line = 1; std::getline(in, text); ++line) {
        std::smatch m;
        if (std::regex_search(text, m, kInclude)) {
            found.push_back(
                {fs::relative(file, src).generic_string(), line, m[2].str(), m[1].str() == "<"});
        }
    }
    return found;
}

// Every include of the files under src/<folder> (a folder or one file's path without extension).
std::vector<Include> IncludesUnder(const std::string& folder) {
    const fs::path src = fs::path(KW_SOURCE_DIR) / "src";
    std::vector<Include> all;
    const fs::path root = src / folder;
    if (fs::is_directory(root)) {
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            if (entry.is_regular_file() && IsSource(entry.path())) {
                auto more = IncludesOf(entry.path(), src);
                all.insert(all.end(), more.begin(), more.end());
            }
        }
        return all;
    }
    for (const char* ext : {".h", ".cpp"}) {
        fs::path file = root;
        file += ext;
        if (fs::exists(file)) {
            auto more = IncludesOf(file, src);
            all.insert(all.end(), more.begin(), more.end());
        }
    }
    return all;
}

bool IsQt(const Include& inc) {
    static const std::regex kQt(R"(^(Q[A-Za-z]|qt|Qt))");
    return std::regex_search(inc.target, kQt) ||
           (!inc.angled && inc.target.rfind("platform/qt/", 0) == 0);
}

bool StartsWithAny(const std::string& s, const std::vector<std::string>& prefixes) {
    for (const auto& p : prefixes) {
        if (s.rfind(p, 0) == 0)
            return true;
    }
    return false;
}

struct Rule {
    const char* name;
    std::vector<std::string> folders;
    // Project includes ("...") allowed; empty means any. Angled includes are checked for Qt only.
    std::vector<std::string> allowedProject;
    std::vector<std::string> forbiddenProject;
    bool forbidQt = true;
};

std::ostream& operator<<(std::ostream& os, const Rule& rule) {
    return os << rule.name;
}

const std::string kContract[] = {"client/ui/dialer/engine/dravlink",
                                 "client/ui/dialer/engine/engine_factory"};
const std::string kCoreHelpers[] = {
    "client/ui/dialer/core/event_manager", "client/ui/dialer/core/settings",
    "client/ui/dialer/core/utilities", "client/ui/dialer/core/file_table"};

std::vector<Rule> Rules() {
    const std::vector<std::string> contract(std::begin(kContract), std::end(kContract));
    const std::vector<std::string> coreHelpers(std::begin(kCoreHelpers), std::end(kCoreHelpers));
    std::vector<std::string> coreAllowed = {"platform/automation/", "platform/forms/",
                                            "platform/registry/"};
    coreAllowed.insert(coreAllowed.end(), coreHelpers.begin(), coreHelpers.end());
    std::vector<std::string> contractAllowed = {"platform/automation/", "platform/registry/"};
    contractAllowed.insert(contractAllowed.end(), contract.begin(), contract.end());
    std::vector<std::string> linkAllowed = {"link/", "platform/automation/", "platform/forms/"};
    linkAllowed.insert(linkAllowed.end(), contract.begin(), contract.end());
    return {
        {"ProgramIncludesNoToolkitNorEngineImplementation",
         {"client"},
         {},
         {"platform/qt/", "platform/headless/", "dravlink/", "link/"}},
        {"StdOnlyPlatformIncludesNoToolkit",
         {"platform/automation", "platform/forms", "platform/registry", "platform/headless"},
         {"platform/automation/", "platform/forms/", "platform/registry/", "platform/headless/"},
         {}},
        {"ContractIncludesOnlyValuesAndSettings", contract, contractAllowed, {}},
        {"CoreHelpersIncludeOnlyThePlatform", coreHelpers, coreAllowed, {}},
        // The link carries the contract for any engine: it knows neither the program's forms
        // nor the simulator, and the simulator does not know it is served over a bus.
        {"LinkCarriesTheContractOnly", {"link"}, linkAllowed, {}, false},
        {"SimulatorKnowsNoLink", {"dravlink"}, {}, {"link/", "platform/qt/"}},
    };
}

class Layering : public ::testing::TestWithParam<Rule> {};

TEST_P(Layering, HoldsForEveryInclude) {
    const Rule& rule = GetParam();
    int checked = 0;
    for (const auto& folder : rule.folders) {
        for (const Include& inc : IncludesUnder(folder)) {
            ++checked;
            const std::string where = inc.file + ":" + std::to_string(inc.line) + " includes " +
                                      (inc.angled ? "<" : "\"") + inc.target +
                                      (inc.angled ? ">" : "\"");
            if (rule.forbidQt) {
                EXPECT_FALSE(IsQt(inc)) << where;
            }
            if (inc.angled)
                continue;
            EXPECT_FALSE(StartsWithAny(inc.target, rule.forbiddenProject)) << where;
            if (!rule.allowedProject.empty()) {
                EXPECT_TRUE(StartsWithAny(inc.target, rule.allowedProject)) << where;
            }
        }
    }
    // A rule over files that moved away would pass for nothing.
    EXPECT_GT(checked, 0) << rule.name << " found no file to check";
}

INSTANTIATE_TEST_SUITE_P(SourceTree, Layering, ::testing::ValuesIn(Rules()),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
