#include "platform/automation/failure.h"

#include <map>

namespace kw::automation {

Failure::Failure(int number, std::string description)
    : std::runtime_error(description), number_(number), description_(std::move(description)) {}

Failure::Failure(int number) : Failure(number, StandardDescription(number)) {}

std::string StandardDescription(int number) {
    static const std::map<int, std::string> kDescriptions = {
        {3, "Return without GoSub"},
        {5, "Invalid procedure call or argument"},
        {6, "Overflow"},
        {7, "Out of memory"},
        {9, "Subscript out of range"},
        {10, "This array is fixed or temporarily locked"},
        {11, "Division by zero"},
        {13, "Type mismatch"},
        {14, "Out of string space"},
        {28, "Out of stack space"},
        {35, "Sub or Function not defined"},
        {48, "Error in loading DLL"},
        {52, "Bad file name or number"},
        {53, "File not found"},
        {54, "Bad file mode"},
        {55, "File already open"},
        {57, "Device I/O error"},
        {58, "File already exists"},
        {61, "Disk full"},
        {62, "Input past end of file"},
        {67, "Too many files"},
        {68, "Device unavailable"},
        {70, "Permission denied"},
        {71, "Disk not ready"},
        {75, "Path/File access error"},
        {76, "Path not found"},
        {91, "Object variable or With block variable not set"},
        {94, "Invalid use of Null"},
        {380, "Invalid property value"},
        {424, "Object required"},
        {429, "ActiveX component can't create object"},
        {438, "Object doesn't support this property or method"},
        {440, "Automation error"},
        {450, "Wrong number of arguments or invalid property assignment"},
        {462, "The remote server machine does not exist or is unavailable"},
        {32755, "Cancel was selected."},
    };
    auto it = kDescriptions.find(number);
    return it != kDescriptions.end() ? it->second : "Application-defined or object-defined error";
}

}  // namespace kw::automation
