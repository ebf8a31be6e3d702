// The text form of the hives: the line of each value, exact rewrites, lines kept, damage detected.

#include <algorithm>
#include <sstream>

#include "platform/registry/hive_text.h"
#include "platform/registry/registry_fixture.h"

namespace kw::registry::testing {
namespace {

std::vector<BYTE> Sz(const std::string& text) {
    std::vector<BYTE> bytes(text.begin(), text.end());
    bytes.push_back(0);
    return bytes;
}

using ValueLines = RegistryTest;

// Each value is written as the line another reader of the format expects, and comes back from
// the file with its type and bytes as given.
TEST_F(ValueLines, EachValueIsWrittenAsItsLineAndComesBackUnchanged) {
    std::string controls;
    for (int c = 1; c < 32; ++c) controls += static_cast<char>(c);
    const struct {
        std::string name;
        DWORD type;
        std::vector<BYTE> bytes;
        std::string line;
    } cases[] = {
        {"Quote \"q\"", REG_SZ, Sz("C:\\dir\\\"q\" \\\\server\\share\\"),
         R"("Quote \"q\""="C:\\dir\\\"q\" \\\\server\\share\\")"},
        {"Controls", REG_SZ, Sz(controls + "\x7f" + "end"),
         R"("Controls"="\1\2\3\4\5\6\a\b\t\n\v\f\r\16\17\20\21\22\23\24\25\26\27\30\31\32\e\34\35\36\37)"
         "\x7f"
         R"(end")"},
        // Bytes in octal from here: unlike \x, an octal escape ends after three digits.
        {"Octal next", REG_SZ, Sz("a\0017b\2x"),
         R"("Octal next"="a\0017b\2x")"},  // padded before a digit
        {"Latin", REG_SZ, Sz("caf\303\251 \303\274A \303\274g"),
         R"("Latin"="caf\xe9 \x00fcA \xfcg")"},  // padded before a hex digit
        {"Wide", REG_SZ, Sz("\344\270\255\346\226\207 \342\202\2541"),
         R"("Wide"="\x4e2d\x6587 \x20ac1")"},
        {"Emoji \360\237\230\200", REG_SZ, Sz("\360\237\230\200beef"),
         R"("Emoji \xd83d\xde00"="\xd83d\xde00beef")"},
        {"Brackets [x]", REG_SZ, Sz("[]=@;#"), R"("Brackets [x]"="[]=@;#")"},
        {"", REG_SZ, Sz("default with \"quotes\""), R"(@="default with \"quotes\"")"},
        {"NotUtf8", REG_SZ, Bytes({'c', 'a', 'f', 0xe9, 0}), R"("NotUtf8"=hex(1):63,61,66,e9,00)"},
        {"NoNul", REG_SZ, Bytes({'a', 'b'}), R"("NoNul"=hex(1):61,62)"},
        {"Expand", REG_EXPAND_SZ, Sz("%T%\\x"), R"("Expand"=str(2):"%T%\\x")"},
        {"Multi", REG_MULTI_SZ, Sz(std::string("one\0tw\"o\0", 9)),
         R"("Multi"=str(7):"one\0tw\"o\0")"},
        {"Dw", REG_DWORD, Bytes({42, 0, 0, 0}), R"("Dw"=dword:0000002a)"},
        {"ShortDw", REG_DWORD, Bytes({1, 2, 3}), R"("ShortDw"=hex(4):01,02,03)"},
        {"Big", REG_DWORD_BIG_ENDIAN, Bytes({0x12, 0x34, 0x56, 0x78}),
         R"("Big"=hex(5):12,34,56,78)"},
        {"Bin", REG_BINARY, Bytes({0xde, 0xad, 0x00, 0xff}), R"("Bin"=hex:de,ad,00,ff)"},
        {"Nothing", REG_BINARY, {}, R"("Nothing"=hex:)"},
        {"Odd", 0x20000, Bytes({1}), R"("Odd"=hex(20000):01)"},
        {"Qword", 11, Bytes({1, 2, 3, 4, 5, 6, 7, 8}), R"("Qword"=hex(b):01,02,03,04,05,06,07,08)"},
    };
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    for (const auto& c : cases) {
        ASSERT_EQ(SetBytes(key, c.name.c_str(), c.type, c.bytes), ERROR_SUCCESS) << c.line;
    }
    const std::string file = ReadFile(userHive_);
    Restart();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        EXPECT_NE(file.find("\n" + c.line + "\n"), std::string::npos) << file;
        const auto v = Query(key, c.name.c_str());
        ASSERT_TRUE(v);
        EXPECT_EQ(v->type, c.type);
        EXPECT_EQ(v->bytes, c.bytes);
    }
    for (char c = 1; c < 32; ++c) {
        EXPECT_EQ(file.find(c == '\n' ? "\n\n\n" : std::string(1, c)), std::string::npos)
            << "raw control character " << int(c) << " in the file";
    }
    RegCloseKey(key);
}

// Brackets and non-ASCII in key names are escaped, and the key opens again in any case; a value
// name that is not UTF-8 cannot be written.
TEST_F(ValueLines, KeyNamesAreEscapedAndMatchInAnyCase) {
    HKEY key = Create(HKEY_CURRENT_USER, "Software\\Sub Key [x]\\Caf\xc3\xa9");
    ASSERT_EQ(SetDword(key, "v", 7), ERROR_SUCCESS);
    EXPECT_EQ(SetString(key, "bad \xff name", "x"), ERROR_INVALID_PARAMETER);
    RegCloseKey(key);
    EXPECT_NE(ReadFile(userHive_).find("[Software\\\\Sub Key \\[x\\]\\\\Caf\\xe9]"),
              std::string::npos)
        << ReadFile(userHive_);
    Restart();
    ASSERT_EQ(
        RegOpenKeyExA(HKEY_CURRENT_USER, "software\\sub key [X]\\CAF\xc3\xa9", 0, KEY_READ, &key),
        ERROR_SUCCESS);
    EXPECT_EQ(Query(key, "v")->bytes, Bytes({7, 0, 0, 0}));
    RegCloseKey(key);
}

// A file the store wrote reads back into the same bytes; the rewrite of an unchanged section
// is identical too.
using ExactRewrite = RegistryTest;

TEST_F(ExactRewrite, StoreWrittenFileParsesAndSerializesToTheSameBytes) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "UserName", "ann \"the\" user\\caf\xc3\xa9\t"), ERROR_SUCCESS);
    std::vector<BYTE> longBlob;
    for (int i = 0; i < 200; ++i) longBlob.push_back(static_cast<BYTE>(i * 7));
    ASSERT_EQ(SetBytes(key, "Blob", REG_BINARY, longBlob), ERROR_SUCCESS);
    // Keys are written parent before child, in name order, whatever the order they came in.
    for (const char* path : {"Software\\B", "Software\\A\\Z", "Software\\a b", "Software\\A"}) {
        HKEY k = Create(HKEY_CURRENT_USER, path);
        ASSERT_EQ(SetDword(k, "v", 1), ERROR_SUCCESS);
        RegCloseKey(k);
    }

    const std::string bytes = ReadFile(userHive_);
    text::ParseError why;
    auto doc = text::Parse(bytes, &why);
    ASSERT_TRUE(doc) << why.line << ": " << why.reason;
    EXPECT_EQ(text::Serialize(*doc), bytes);

    // Long binary data wraps like Wine's, and every line stays short.
    std::istringstream lines(bytes);
    int continued = 0;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80u) << line;
        continued += !line.empty() && line.back() == '\\' ? 1 : 0;
    }
    EXPECT_GE(continued, 6);
    Restart();
    EXPECT_EQ(Query(key, "Blob")->bytes, longBlob);
    RegCloseKey(key);

    std::vector<std::size_t> at;
    for (const char* k : {"\\\\A]", "\\\\A\\\\Z]", "\\\\a b]", "\\\\B]"}) {
        at.push_back(bytes.find("[Software" + std::string(k)));
    }
    EXPECT_TRUE(std::is_sorted(at.begin(), at.end()) && at.back() != std::string::npos) << bytes;
}

std::vector<BYTE> Counting(int last) {
    std::vector<BYTE> bytes;
    for (int b = 0; b <= last; ++b) bytes.push_back(static_cast<BYTE>(b));
    return bytes;
}

// Spellings another writer may leave: each reads as its bytes, and rewrites of the hive (changes
// to another key) give back its section byte for byte.
TEST_F(ExactRewrite, ForeignSpellingsAreReadAndSurviveRewritesByteForByte) {
    const struct {
        const char* what;
        std::string section;
        const char* value;  // in Software\Demo; nullptr: the calls cannot name it
        std::vector<BYTE> bytes;
    } cases[] = {
        {"a raw Latin-1 byte in a key name",
         "[Software\\\\Caf\xe9] 1\n\"v\"=dword:00000001\n",
         nullptr,
         {}},
        {"hex(7) continued onto an empty line",
         "[Software\\\\Demo] 1\n\"m\"=hex(7):61,00,00,\\\n\n\"z\"=\"after\"\n", "m",
         Bytes({'a', 0, 0})},
        {"carriage returns at line ends",
         ";; note\r\r\r\n\n[Software\\\\Demo] 1\r\r\n\"v\"=\"x\"\r\n", "v", Bytes({'x', 0})},
        {"hex continued onto an indented line",
         "[Software\\\\Demo] 1700000000\n#time=1d9f1e2a3b4c5d6\n\"Bin\"=hex:00,01,02,03,04,05,06,"
         "07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,\\\n  15,16\n",
         "Bin", Counting(0x16)},
        {"an upper-case dword", "[Software\\\\Demo] 1\n\"Dw\"=dword:2A\n", "Dw",
         Bytes({0x2a, 0, 0, 0})},
        {"str(2)", "[Software\\\\Demo] 1\n\"E\"=str(2):\"%SystemRoot%\\\\system32\"\n", "E",
         Sz("%SystemRoot%\\system32")},
        {"a short \\x escape", "[Software\\\\Demo] 1\n\"P\"=\"C:\\\\dir\\\\\\\"q\\\" caf\\xe9\"\n",
         "P", Sz("C:\\dir\\\"q\" caf\xc3\xa9")},
        {"str: with raw UTF-8, \\x, octal and an unknown escape",
         "[Software\\\\Demo] 1\n\"R\"=str:\"caf\xc3\xa9 \\x41\\101\\q\"\n", "R",
         Sz("caf\xc3\xa9 AAq")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WriteFile(userHive_, "WINE REGISTRY Version 2\n" + c.section);
        Restart();
        if (c.value != nullptr) {
            HKEY key = nullptr;
            ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Demo", 0, KEY_READ, &key), 0);
            const auto value = Query(key, c.value);
            EXPECT_TRUE(value && value->bytes == c.bytes) << "reads as missing or changed";
            RegCloseKey(key);
        }
        for (DWORD round = 1; round <= 3; ++round) {
            HKEY other = Create(HKEY_CURRENT_USER, "Software\\Other");
            ASSERT_EQ(SetDword(other, "round", round), ERROR_SUCCESS);
            RegCloseKey(other);
        }
        EXPECT_NE(ReadFile(userHive_).find(c.section), std::string::npos) << ReadFile(userHive_);
    }
}

using ForeignLines = RegistryTest;

TEST_F(ForeignLines, LinesTheStoreDoesNotUnderstandAreKeptWhereTheyWere) {
    const std::string original =
        "WINE REGISTRY Version 2\n"
        ";; All keys relative to \\\\User\\\\S-1-5-21-0-0-0-1000\n"
        "\n"
        "#arch=win64\n"
        "#option=global\n"
        "\n"
        "[Software\\\\Ostvarra\\\\Kestrelway] 1700000000\n"
        "#time=1d9f1e2a3b4c5d6\n"
        "#class=\"0\"\n"
        "; a note someone left\n"
        "\"Float\"=float:1.5\n"
        "\"Password\"=\"secret\"\n"
        "\"Queue\"=qword:0000000000000001\n"
        "\n"
        "[Software\\\\Untouched] 1600000000\n"
        "#link\n"
        "\"Keep\"=\"me\"\n";
    WriteFile(userHive_, original);
    SetWallClock([] { return std::int64_t{1773480413}; });

    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    EXPECT_EQ(QueryString(key, "Password"), "secret");
    EXPECT_FALSE(Query(key, "Float")) << "a type the store cannot read is not reported as a value";
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);
    ASSERT_EQ(SetDword(key, "Queue", 5), ERROR_SUCCESS);  // replaces the unknown line of that name

    const std::string file = ReadFile(userHive_);
    for (const char* kept : {"#option=global\n",
                             "\n#time=1d9f1e2a3b4c5d6\n#class=\"0\"\n"
                             "; a note someone left\n\"Float\"=float:1.5\n",
                             "\n[Software\\\\Untouched] 1600000000\n#link\n\"Keep\"=\"me\"\n"}) {
        EXPECT_NE(file.find(kept), std::string::npos) << "lost:\n" << kept << "\nin:\n" << file;
    }
    EXPECT_EQ(file.find("qword"), std::string::npos) << file;
    EXPECT_NE(file.find("\"Queue\"=dword:00000005"), std::string::npos) << file;
    EXPECT_NE(file.find("\"UserName\"=\"ann\""), std::string::npos) << file;
    EXPECT_NE(file.find("[Software\\\\Ostvarra\\\\Kestrelway] 1773480413\n"), std::string::npos)
        << "a changed key takes the time of the clock handed in";

    ASSERT_EQ(RegDeleteValueA(key, "Float"), ERROR_SUCCESS) << "the unknown line can be deleted";
    EXPECT_EQ(ReadFile(userHive_).find("float:"), std::string::npos);
    RegCloseKey(key);
}

TEST(DamageDetection, BrokenStructureIsRefusedWithItsLine) {
    const std::string header = "WINE REGISTRY Version 2\n\n[K]\n";
    const std::vector<std::pair<std::string, int>> cases = {
        {"", 0},
        {"REGEDIT4\n\n[K]\n", 1},
        {"WINE REGISTRY Version 1\n", 1},
        {"WINE REGISTRY Version 2\n\"v\"=\"outside\"\n", 2},
        {header + "[unterminated\n", 4},
        {header + "\"open=\"x\"\n", 4},
        {header + "\"v\" \"x\"\n", 4},
        {header + "\"v\"=\"unterminated\n", 4},
        {header + "\"v\"=\"x\" trailing\n", 4},
        {header + "\"v\"=dword:xyz\n", 4},
        {header + "\"v\"=dword:123456789\n", 4},
        {header + "\"v\"=hex:01,zz\n", 4},
        {header + "\"v\"=hex:01,02,\\\n", 4},  // continuation cut off by the end of the file
        {header + std::string("\"v\"=\"b\0c\"\n", 10), 0},
    };
    for (const auto& [content, line] : cases) {
        text::ParseError why;
        EXPECT_FALSE(text::Parse(content, &why)) << content;
        if (line > 0) {
            EXPECT_EQ(why.line, line) << content;
        }
        EXPECT_FALSE(why.reason.empty()) << content;
    }
    EXPECT_TRUE(text::Parse(header + "\"v\"=hex:\nanything else\n  indented\n"));
}

}  // namespace
}  // namespace kw::registry::testing
