#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dravlink/text_files.h"

namespace dravlink {

class Secrets;

// The five policy keys the client asks for, per user.
inline const char* const kPolicyKeys[] = {"CCdialing", "ManualDialing", "POPordering",
                                          "ISPordering", "DialStringEditing"};
// The engine's own right, which the client never asks for: changing the stored ISP logins.
inline const char* const kIspLoginPolicy = "ISPLogin";

struct Account {
    std::string user;      // "*" is everyone without an account of their own
    std::string password;  // "*" accepts any password
    std::map<std::string, std::string> policies;
};

struct Destination {
    std::string name;
    std::string type;               // "ISP", "VPN" or "Both"
    std::vector<std::string> isps;  // empty: every ISP
    std::string tunnelServer;
    std::string deviceName;
    std::string localPhoneNumber;
    std::string scenario;  // empty: the engine's setting
};

// The keys a location holds, in the order the client writes them.
inline const char* const kLocationKeys[] = {
    "CountryName", "CountryCode",        "AreaCode",           "Exchange",
    "Number",      "DisableCallWaiting", "LongDistanceAccess", "OutSideAccess",
    "CallingCard", "ManualDial",         "TunnelOverLAN",      "ConfirmDialString"};

struct Location {
    std::string name;
    std::map<std::string, std::string> properties;  // by the keys above
    std::string Get(const std::string& key) const;
};

struct Country {
    std::string name;
    int code = 0;
    std::string letterCode;
    std::string localRadius;
    std::string enable;
};

struct CallingCard {
    int id = 0;  // the identifier locations and the client's settings keep
    std::string name;
    std::string number;
    std::string longDistanceRule;
    std::string sameAreaRule;
};

struct Isp {
    std::string name;
    std::string helpNumber;
    std::string website;
    bool enabled = true;
    int weight = 0;  // lower is preferred
};

struct Pop {
    int index = 0;  // position in the POP table: the id the client carries back
    std::string isp;
    int countryCode = 0;
    std::string areaCode;
    std::string number;
    std::string city;
    std::string state;
    std::string modem;
    int cost = 0;
    bool enabled = true;
};

// A saved ordering: the rows as the user left them.
struct SavedPop {
    std::string number;
    std::string isp;
    bool enabled = true;
};
struct SavedIsp {
    std::string name;
    bool enabled = true;
};

struct EngineSettings {
    std::string scenario;
    std::string modem = "Standard 33600 bps Modem";
    std::string vpnDevice = "Ostvarra VPN Adapter";
    // How long the engine takes to answer a dial list request: a real one computes for a while.
    int dialListDelayMs = 250;
    // A phone book too long to ship: that many numbers of one ISP in one area code, made at load.
    struct GeneratedPops {
        std::string isp;
        int countryCode = 0;
        std::string areaCode;
        int count = 0;
    } generatedPops;
};

// Everything the engine knows, read from its data directory. Loading is all or nothing: a
// malformed file throws DataError and nothing of the half-read data is used.
struct Store {
    std::filesystem::path dir;
    EngineSettings settings;
    std::vector<Account> accounts;
    std::vector<Destination> destinations;
    std::vector<Location> locations;
    std::vector<Country> countries;
    std::vector<CallingCard> cards;
    std::vector<Isp> isps;
    std::vector<Pop> pops;
    // Per user: keyed by user, location and destination (PopKey), and by user and destination.
    std::map<std::string, std::vector<SavedPop>> savedPops;
    std::map<std::string, std::vector<SavedIsp>> savedIsps;
    // ISP logins per user and ISP ("user|isp"): user name and a reference to the password.
    std::map<std::string, std::pair<std::string, std::string>> ispLogins;
    // Where the passwords of the accounts and the ISP logins are kept.
    std::shared_ptr<Secrets> secrets;

    static Store Load(const std::filesystem::path& dir);
    // Copies the sample files that are missing from dir; the user's own files stay as they are.
    static void Seed(const std::filesystem::path& dir, const std::filesystem::path& sampleDir);

    const Account* FindAccount(const std::string& user) const;  // falls back to "*"
    Destination* FindDestination(const std::string& name);
    Location* FindLocation(const std::string& name);
    const Country* FindCountry(int code) const;
    Isp* FindIsp(const std::string& name);

    // Each user keeps locations of their own: `locations` holds those of locationsOwner, read from
    // LocationsFile(). Before a logon, and for a user without a file yet, they are the shared
    // "locations.ini" the data directory was seeded with.
    std::string locationsOwner;
    std::filesystem::path LocationsFile() const;
    void UseLocationsOf(const std::string& user);
    // False when the owner's locations cannot be written: the file or its folder is read-only.
    bool LocationsWritable() const;
    // False when the write failed; what was in memory stays.
    bool SaveLocations() const;
    void SaveAccounts() const;
    void SaveCards() const;
    void SaveOrderings() const;
    void SaveIspLogins() const;
    // Replaces every password that is not yet a reference (as typed in a file, or in an older
    // engine's encoding) by one, and writes the files that changed.
    void SealPasswords();
};

std::string PopKey(const std::string& user, const std::string& location,
                   const std::string& destination);
std::string IspKey(const std::string& user, const std::string& destination);
// The location a PopKey names.
std::string LocationOfKey(const std::string& key);

}  // namespace dravlink
