#pragma once

#include <string>

namespace kw::dialer {

// The numbers of the program's string table. Texts shared with users live in one table.
namespace ResConst {
inline constexpr int kChartStatistics = 2;
inline constexpr int kChartDeviceErrors = 3;
inline constexpr int kChartRoundTrip = 4;
inline constexpr int kSpeed = 5;
inline constexpr int kChartPacketLoss = 6;
inline constexpr int kIspBytesReceivePerSecond = 7;
inline constexpr int kIspBytesTransmitPerSecond = 8;
inline constexpr int kVpnBytesReceivePerSecond = 9;
inline constexpr int kVpnBytesTransmitPerSecond = 10;
inline constexpr int kRoundTripDelay = 11;
inline constexpr int kPacketLoss = 12;
inline constexpr int kIspBytesSent = 13;
inline constexpr int kIspBytesReceived = 14;
inline constexpr int kVpnBytesSent = 15;
inline constexpr int kVpnBytesReceived = 16;
inline constexpr int kDuration = 17;
inline constexpr int kCrcErrors = 18;
inline constexpr int kFramingErrors = 19;
inline constexpr int kAlignmentErrors = 20;
inline constexpr int kHardwareOverruns = 21;
inline constexpr int kBufferOverruns = 22;
inline constexpr int kOpenClosePerformance = 23;
inline constexpr int kDetachPerformance = 24;
inline constexpr int kIspBytesSentReceived = 25;
inline constexpr int kVpnBytesSentReceived = 26;
inline constexpr int kRefreshPopQuestion = 27;
inline constexpr int kRefreshIspQuestion = 28;
inline constexpr int kAppName = 29;
inline constexpr int kNewerPops = 30;
inline constexpr int kLoginInfoFor = 31;
inline constexpr int kIspLoginChangeFailed = 32;
inline constexpr int kSaveDialListQuestion = 33;
inline constexpr int kLocationExists = 34;
inline constexpr int kErr2000 = 35;
inline constexpr int kErr2001 = 36;
inline constexpr int kErr2002 = 37;
inline constexpr int kErr2003 = 38;
inline constexpr int kErr2004 = 39;
inline constexpr int kErr2005 = 40;
inline constexpr int kErr2006 = 41;
inline constexpr int kErr2007 = 42;
inline constexpr int kErr2008 = 43;
inline constexpr int kErr2009 = 44;
inline constexpr int kErr2010 = 45;
inline constexpr int kErr2011 = 46;
inline constexpr int kLocationNotConfigured = 47;
}  // namespace ResConst

// The text of a string resource; "" for a number the table does not hold.
const std::string& LoadResString(int id);

}  // namespace kw::dialer
