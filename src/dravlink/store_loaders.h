#pragma once

// One loader for each of the engine's data files. Each reads its file whole and fails with a
// DataError naming the file and the line of the first thing it cannot use.
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "dravlink/store.h"

namespace dravlink {

EngineSettings LoadEngineSettings(const std::filesystem::path& file);
std::vector<Account> LoadAccounts(const std::filesystem::path& file);
std::vector<Isp> LoadIsps(const std::filesystem::path& file);
// Every POP's ISP must be one of isps.
std::vector<Pop> LoadPops(const std::filesystem::path& file, const std::vector<Isp>& isps);
// The ISPs a destination names must be among isps; a destination without a device uses
// defaultDevice.
std::vector<Destination> LoadPhoneBook(const std::filesystem::path& file,
                                       const std::vector<Isp>& isps,
                                       const std::string& defaultDevice);
std::vector<Location> LoadLocations(const std::filesystem::path& file);
std::vector<Country> LoadCountries(const std::filesystem::path& file);
std::vector<CallingCard> LoadCallingCards(const std::filesystem::path& file);

// The user's own files, which may not exist yet.
struct Orderings {
    std::map<std::string, std::vector<SavedPop>> pops;
    std::map<std::string, std::vector<SavedIsp>> isps;
};
Orderings LoadOrderings(const std::filesystem::path& file);
std::map<std::string, std::pair<std::string, std::string>> LoadIspLogins(
    const std::filesystem::path& file);

}  // namespace dravlink
