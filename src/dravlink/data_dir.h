#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "dravlink/secrets.h"
#include "dravlink/store.h"

namespace dravlink {

struct Options {
    std::filesystem::path dataDir;    // empty: $XDG_DATA_HOME/Ostvarra/Dravlink
    std::filesystem::path sampleDir;  // empty: the sample data installed with the program
    std::string scenario;             // when set, every call goes this way
    // Where passwords are kept; empty: the desktop's Secret Service when one runs, else a file
    // sealed with the user's key in dataDir/secrets.
    std::shared_ptr<Secrets> secrets = nullptr;
};

std::filesystem::path DefaultDataDir();
std::filesystem::path DefaultSampleDir();

// The options with their directories filled in; an unknown scenario fails.
Options Resolved(Options options);
// Seeds the data directory from the sample on first start and reads it; a malformed file, or a
// scenario the engine does not know, fails with a Failure naming the file, and no engine is made.
Store OpenStore(const Options& options);

}  // namespace dravlink
