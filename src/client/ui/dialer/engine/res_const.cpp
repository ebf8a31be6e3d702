#include "client/ui/dialer/engine/res_const.h"

#include <map>

namespace kw::dialer {

const std::string& LoadResString(int id) {
    static const std::map<int, std::string> kTable = {
        {2, "ISP/VPN Statistics"},
        {3, "Device Errors"},
        {4, "Round Trip (sec)"},
        {5, "Speed: "},
        {6, "Packet Loss"},
        {7, "ISP Bytes Receive/second"},
        {8, "ISP Bytes Transmit/second"},
        {9, "VPN Bytes Receive/second"},
        {10, "VPN Bytes Transmit/second"},
        {11, "Round Trip Delay"},
        {12, "Packet Loss"},
        {13, "ISP bytes sent"},
        {14, "ISP Bytes received"},
        {15, "VPN bytes sent"},
        {16, "VPN bytes received"},
        {17, "Duration of current connection"},
        {18, "CRC error count"},
        {19, "Framing error count"},
        {20, "Alignment error count"},
        {21, "Hardware overrun error count"},
        {22, "Buffer overrun error count"},
        {23, "Open/Close Performance Pulldown Window"},
        {24, "Detaching the performance window from Kestrelway"},
        {25, "ISP bytes sent/received"},
        {26, "VPN bytes sent/received"},
        {27, "Refreshing your POP list will discard your saved list, do you wish to continue?"},
        {28, "Refreshing your ISP list will discard your saved list, do you wish to continue?"},
        {29, "Kestrelway"},
        {30, "There are newer POP numbers in the database\n.Please refresh your saved list."},
        {31, "Login Info for"},
        {32,
         "Failed to change ISP login information, please consult your administrator for your "
         "policy rights."},
        {33, "ToPullout's data has changed.  Do you wish to save the changes?"},
        {34, "The location you specified already exists, please try a different name!"},
        {35, "Unable to get entry type (ISP/Tunnel) from dial list."},
        {36, "Could not get first entry in dial list data."},
        {37, "There are no available ISP/POP phone numbers to dial."},
        {38, "Unable to create/modify the RAS phonebook entry."},
        {39, "Could not find the selected RAS capable device."},
        {40, "Unable to properly disconnect the current RAS connection."},
        {41, "There are no more ISP/POP phone numbers to dial."},
        {42, "Dial attempt made with an invalid dialing pattern."},
        {43, "Attempted to dial an invalid number."},
        {44, "Unable to locate the Ostvarra NDIS-WAN driver."},
        {45,
         "Unable to create a tunnel to the destination network; the\nTunnel Server at the "
         "destination is unreachable.  Ask your\n network administrator to check the Tunnel "
         "Server and retry the connection later."},
        {46, "There is no Tunnel Server to connect to."},
        {47,
         "The Location Information in your system has not been configured.\nPlease go to the "
         "Control Panel folder, double click Modems, then\nclick Dialing Properties to configure "
         "the Location Information.\nPlease restart Kestrelway after this procedure has been "
         "completed."},
    };
    static const std::string kNone;
    auto it = kTable.find(id);
    return it != kTable.end() ? it->second : kNone;
}

}  // namespace kw::dialer
