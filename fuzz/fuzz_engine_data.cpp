// The engine's data files on any content: each loader reads what it can use or refuses the file
// with a DataError; nothing else escapes, nothing crashes. The first byte picks the loader.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "dravlink/store_loaders.h"
#include "dravlink/text_files.h"

namespace {

namespace fs = std::filesystem;
using namespace dravlink;

const fs::path& Scratch() {
    static const fs::path file =
        fs::temp_directory_path() / ("kw-fuzz-engine-data-" + std::to_string(::getpid()) + ".txt");
    return file;
}

void Load(std::uint8_t which, const fs::path& file) {
    static const std::vector<Isp> isps = {Isp{"Bluewave Online", "", "", true, 1}};
    switch (which % 10) {
        case 0:
            LoadEngineSettings(file);
            break;
        case 1:
            LoadAccounts(file);
            break;
        case 2:
            LoadIsps(file);
            break;
        case 3:
            LoadPops(file, isps);
            break;
        case 4:
            LoadPhoneBook(file, isps, "VPN");
            break;
        case 5:
            LoadLocations(file);
            break;
        case 6:
            LoadCountries(file);
            break;
        case 7:
            LoadCallingCards(file);
            break;
        case 8:
            LoadOrderings(file);
            break;
        default:
            LoadIspLogins(file);
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    {
        std::ofstream out(Scratch(), std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data + 1), static_cast<std::streamsize>(size - 1));
    }
    try {
        Load(data[0], Scratch());
    } catch (const DataError&) {
    }
    return 0;
}
