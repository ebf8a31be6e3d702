#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <span>
#include <vector>

#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

namespace kw::link {

// The engine's names on the bus: one well-known name, one object, one interface. The client
// keeps its event receiver at a path of its own on its own connection.
inline constexpr const char* kServiceName = "com.ostvarra.Dravlink";
inline constexpr const char* kObjectPath = "/com/ostvarra/Dravlink";
inline constexpr const char* kInterface = "com.ostvarra.Dravlink1";
inline constexpr const char* kEventsPath = "/com/ostvarra/Dravlink/Events";
inline constexpr const char* kEventsInterface = "com.ostvarra.DravlinkEvents1";
// An automation failure raised by the engine travels as this error, its text "number\ndescription".
inline constexpr const char* kFailureError = "com.ostvarra.Dravlink.Failure";

// One automation value on the wire: the signature (iv), its VarType number and a payload whose
// D-Bus type follows from it. Text travels as bytes (ay) so that every string comes back as it
// went, whatever its encoding; Single travels as a double, which holds every float exactly.
struct WireValue {
    automation::Variant value;
    bool wellFormed = true;  // false when what was read is not a value of this shape
};

// An array: (i element type, ai bounds as lower,upper per dimension, a(iv) elements with the
// first subscript varying fastest, as automation stores them).
struct WireArray {
    // Always an array: QtDBus writes a default one to learn the signature.
    automation::Variant value = automation::Variant::FromArray({});
    bool wellFormed = true;
};

using WireList = QList<WireValue>;

// Registers the wire types with QtDBus; every program that talks to the engine calls it once.
void RegisterWireTypes();

// An object reference cannot cross the link: marshalling one fails with 13 and says so.
QDBusArgument& operator<<(QDBusArgument& arg, const WireValue& value);
const QDBusArgument& operator>>(const QDBusArgument& arg, WireValue& value);
QDBusArgument& operator<<(QDBusArgument& arg, const WireArray& value);
const QDBusArgument& operator>>(const QDBusArgument& arg, WireArray& value);

// A list of arguments as the bus carries them, and back. Reading a malformed list fails with 13.
WireList ToWire(std::span<const automation::Variant> values);
std::vector<automation::Variant> FromWire(const WireList& list);
// A message argument of signature a(iv) or (iv), which QtDBus hands over as a QDBusArgument.
WireList WireListArgument(const QVariant& argument);
automation::Variant WireValueArgument(const QVariant& argument);

}  // namespace kw::link

Q_DECLARE_METATYPE(kw::link::WireValue)
Q_DECLARE_METATYPE(kw::link::WireArray)
