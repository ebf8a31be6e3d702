#pragma once

#include <stdexcept>
#include <string>

namespace kw::automation {

// The one failure of the program: a classic error number with its description.
// Routines that the program guards catch it; anything else rises to the message loop.
class Failure : public std::runtime_error {
  public:
    Failure(int number, std::string description);
    // A failure with the standard description of its number.
    explicit Failure(int number);

    int Number() const noexcept { return number_; }
    const std::string& Description() const noexcept { return description_; }

  private:
    int number_;
    std::string description_;
};

// Classic numbers the program and its platform raise by name.
namespace err {
inline constexpr int kInvalidCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kDivisionByZero = 11;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kBadFileNameOrNumber = 52;
inline constexpr int kFileNotFound = 53;
inline constexpr int kFileAlreadyOpen = 55;
inline constexpr int kDeviceIo = 57;
inline constexpr int kDiskFull = 61;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kPathFileAccess = 75;
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidUseOfNull = 94;
inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kCantCreateObject = 429;
inline constexpr int kObjectDoesNotSupport = 438;
inline constexpr int kCancel = 32755;
}  // namespace err

// The standard description of a classic number ("Application-defined or object-defined error"
// for a number without one).
std::string StandardDescription(int number);

}  // namespace kw::automation
