#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "platform/registry/registry.h"

namespace kw::registry::testing {

constexpr const char* kUserKey = "Software\\Ostvarra\\Kestrelway";

// A user hive and a machine hive in a fresh temporary folder for each test.
class RegistryTest : public ::testing::Test {
  protected:
    void SetUp() override {
        char templ[] = "/tmp/kw-registry-XXXXXX";
        ASSERT_NE(::mkdtemp(templ), nullptr);
        dir_ = templ;
        userHive_ = dir_ + "/user.reg";
        machineHive_ = dir_ + "/install/system.reg";
        Configure(RegistryConfig{userHive_, machineHive_});
    }

    void TearDown() override {
        SetWallClock({});
        Configure(RegistryConfig{dir_ + "/gone/user.reg", dir_ + "/gone/system.reg"});
        std::error_code ignored;
        std::filesystem::permissions(dir_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(dir_, ignored);
    }

    // Drops what this process remembers of the hives, as a fresh process would start.
    void Restart() { Configure(RegistryConfig{userHive_, machineHive_}); }

    HKEY Create(HKEY root, const char* path, REGSAM access = KEY_ALL_ACCESS) {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExA(root, path, 0, "0", 0, access, nullptr, &key, nullptr),
                  ERROR_SUCCESS)
            << path;
        return key;
    }

    static LONG SetString(HKEY key, const char* name, const std::string& value,
                          DWORD type = REG_SZ) {
        return RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(value.c_str()),
                              static_cast<DWORD>(value.size() + 1));
    }

    static LONG SetBytes(HKEY key, const char* name, DWORD type, const std::vector<BYTE>& bytes) {
        return RegSetValueExA(key, name, 0, type, bytes.data(), static_cast<DWORD>(bytes.size()));
    }

    static LONG SetDword(HKEY key, const char* name, DWORD value) {
        return RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                              sizeof value);
    }

    struct Stored {
        DWORD type = 0;
        std::vector<BYTE> bytes;
    };

    // Reads a value the way the program's helpers do: size first, then the data.
    static std::optional<Stored> Query(HKEY key, const char* name) {
        Stored out;
        DWORD size = 0;
        if (RegQueryValueExA(key, name, nullptr, &out.type, nullptr, &size) != 0)
            return {};
        out.bytes.resize(size);
        if (RegQueryValueExA(key, name, nullptr, &out.type, out.bytes.data(), &size) != 0)
            return {};
        return out;
    }

    static std::optional<std::string> QueryString(HKEY key, const char* name) {
        auto v = Query(key, name);
        if (!v || v->bytes.empty() || v->bytes.back() != 0)
            return {};
        return std::string(v->bytes.begin(), v->bytes.end() - 1);
    }

    static std::string ReadFile(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    static void WriteFile(const std::string& path, const std::string& content) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
    }

    static mode_t Mode(const std::string& path) {
        struct stat st {};
        return ::stat(path.c_str(), &st) == 0 ? st.st_mode & 07777 : 0;
    }

    std::vector<std::string> FilesInDir() const {
        std::vector<std::string> names;
        for (const auto& e : std::filesystem::directory_iterator(dir_)) {
            names.push_back(e.path().filename().string());
        }
        return names;
    }

    std::string dir_;
    std::string userHive_;
    std::string machineHive_;
};

inline std::vector<BYTE> Bytes(std::initializer_list<int> values) {
    std::vector<BYTE> out;
    for (int v : values) out.push_back(static_cast<BYTE>(v));
    return out;
}

}  // namespace kw::registry::testing
