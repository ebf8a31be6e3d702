// Writing a document back to text: the canonical line of each value, and the whole hive with the
// lines it did not understand kept as they were read.

#include "platform/registry/hive_text.h"

#include <cstdio>

#include "platform/registry/hive_text_internal.h"

namespace kw::registry::text {

using namespace detail;

namespace {

constexpr int kHexWrapColumn = 76;

}  // namespace

std::string FormatValue(std::string_view name, const Value& e) {
    std::string line;
    if (name.empty()) {
        line = "@=";
    } else {
        line = "\"" + EscapeOrLatin1(name, "\"") + "\"=";
    }
    const auto& d = e.data;
    if ((e.type == kSz || e.type == kExpandSz || e.type == kMultiSz) && !d.empty() &&
        d.back() == 0) {
        std::string_view body(reinterpret_cast<const char*>(d.data()), d.size() - 1);
        if (auto escaped = EscapeString(body, "\"")) {
            if (e.type == kExpandSz)
                line += "str(2):";
            if (e.type == kMultiSz)
                line += "str(7):";
            line += '"';
            line += *escaped;
            line += '"';
            return line;
        }
    }
    char buf[32];
    if (e.type == kDword && d.size() == 4) {
        const std::uint32_t v =
            static_cast<std::uint32_t>(d[0]) | (static_cast<std::uint32_t>(d[1]) << 8) |
            (static_cast<std::uint32_t>(d[2]) << 16) | (static_cast<std::uint32_t>(d[3]) << 24);
        std::snprintf(buf, sizeof buf, "dword:%08x", v);
        return line + buf;
    }
    if (e.type == kBinary) {
        line += "hex:";
    } else {
        std::snprintf(buf, sizeof buf, "hex(%x):", e.type);
        line += buf;
    }
    // Wrap as Wine does: a count of the characters on the line, reset after each break.
    int count = static_cast<int>(line.size());
    for (std::size_t i = 0; i < d.size(); ++i) {
        std::snprintf(buf, sizeof buf, "%02x", d[i]);
        line += buf;
        count += 2;
        if (i + 1 < d.size()) {
            line += ',';
            if (++count > kHexWrapColumn) {
                line += "\\\n  ";
                count = 2;
            }
        }
    }
    return line;
}

std::string Serialize(const Document& doc) {
    std::string out;
    for (const auto& line : doc.header) {
        out += line;
        out += '\n';
    }
    for (const auto& key : doc.keys) {
        out += "\n[";
        out += EscapeOrLatin1(key.path, "[]");
        out += ']';
        out += key.suffix;
        out += '\n';
        for (const auto& e : key.entries) {
            out += e.raw;
            out += '\n';
        }
    }
    return out;
}

Document NewDocument(std::string_view relativeTo) {
    Document doc;
    doc.header.emplace_back(kVersionLine);
    doc.header.push_back(";; All keys relative to " + std::string(relativeTo));
    doc.header.emplace_back("");
    doc.header.emplace_back("#arch=win64");
    return doc;
}

}  // namespace kw::registry::text
