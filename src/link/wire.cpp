#include "link/wire.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace kw::link {

using automation::Failure;
using automation::SafeArray;
using automation::Variant;
using automation::VarType;

namespace {

constexpr int kArrayKind = static_cast<int>(VarType::Array);

[[noreturn]] void Malformed() {
    throw Failure(automation::err::kTypeMismatch, "The engine's link carried a malformed value");
}

// QtDBus calls the stream operators from its own code, which must not see an exception: so the
// values are checked before they are written, and what is read is only flagged, then refused.
void RequireWireable(const Variant& v) {
    if (v.IsObject()) {
        throw Failure(automation::err::kTypeMismatch,
                      "An object reference cannot be passed to or from the engine");
    }
    if (v.IsArray()) {
        for (const Variant& element : v.ToArray().Storage()) {
            RequireWireable(element);
        }
    }
}

QVariant Payload(const Variant& v) {
    switch (v.Type()) {
        case VarType::Integer:
            return QVariant::fromValue(static_cast<short>(v.ToInteger()));
        case VarType::Long:
            return QVariant::fromValue(static_cast<int>(v.ToLong()));
        case VarType::Single:
            return QVariant::fromValue(static_cast<double>(v.ToSingle()));
        case VarType::Double:
            return QVariant::fromValue(v.ToDouble());
        case VarType::String: {
            const std::string s = v.ToString();
            return QVariant::fromValue(QByteArray(s.data(), static_cast<qsizetype>(s.size())));
        }
        case VarType::Boolean:
            return QVariant::fromValue(v.ToBoolean());
        case VarType::Array:
            return QVariant::fromValue(WireArray{v});
        default:  // Empty and Null carry nothing; D-Bus wants something
            return QVariant::fromValue(false);
    }
}

bool Holds(const QVariant& payload, QMetaType::Type type) {
    return payload.metaType().id() == static_cast<int>(type);
}

WireValue Decode(int kind, const QVariant& payload) {
    switch (kind) {
        case static_cast<int>(VarType::Empty):
            return {Variant(), true};
        case static_cast<int>(VarType::Null):
            return {Variant::Null(), true};
        case static_cast<int>(VarType::Integer):
            if (Holds(payload, QMetaType::Short)) {
                return {Variant(static_cast<std::int16_t>(payload.value<short>())), true};
            }
            break;
        case static_cast<int>(VarType::Long):
            if (Holds(payload, QMetaType::Int)) {
                return {Variant(static_cast<std::int32_t>(payload.toInt())), true};
            }
            break;
        case static_cast<int>(VarType::Single):
            if (Holds(payload, QMetaType::Double)) {
                const double d = payload.toDouble();
                // Every float comes as a double it converts back from; a finite double beyond
                // the float range is no Single.
                if (!std::isfinite(d) || std::fabs(d) <= std::numeric_limits<float>::max()) {
                    return {Variant(static_cast<float>(d)), true};
                }
            }
            break;
        case static_cast<int>(VarType::Double):
            if (Holds(payload, QMetaType::Double)) {
                return {Variant(payload.toDouble()), true};
            }
            break;
        case static_cast<int>(VarType::String):
            if (Holds(payload, QMetaType::QByteArray)) {
                const QByteArray bytes = payload.toByteArray();
                return {
                    Variant(std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()))),
                    true};
            }
            break;
        case static_cast<int>(VarType::Boolean):
            if (Holds(payload, QMetaType::Bool)) {
                return {Variant(payload.toBool()), true};
            }
            break;
        case kArrayKind:
            if (payload.canConvert<QDBusArgument>()) {
                const auto arg = payload.value<QDBusArgument>();
                if (arg.currentSignature() == QLatin1String("(iaia(iv))")) {
                    WireArray array = qdbus_cast<WireArray>(arg);
                    return {std::move(array.value), array.wellFormed};
                }
            }
            break;
        default:
            break;
    }
    return {Variant(), false};
}

}  // namespace

void RegisterWireTypes() {
    qDBusRegisterMetaType<WireValue>();
    qDBusRegisterMetaType<WireArray>();
    qDBusRegisterMetaType<WireList>();
}

QDBusArgument& operator<<(QDBusArgument& arg, const WireValue& value) {
    arg.beginStructure();
    arg << static_cast<int>(value.value.Type());
    arg << QDBusVariant(Payload(value.value));
    arg.endStructure();
    return arg;
}

const QDBusArgument& operator>>(const QDBusArgument& arg, WireValue& value) {
    int kind = 0;
    QDBusVariant payload;
    arg.beginStructure();
    arg >> kind >> payload;
    arg.endStructure();
    value = Decode(kind, payload.variant());
    return arg;
}

QDBusArgument& operator<<(QDBusArgument& arg, const WireArray& value) {
    const SafeArray& a = value.value.ToArray();
    arg.beginStructure();
    arg << static_cast<int>(a.Element() == SafeArray::ElementType::String ? VarType::String
                                                                          : VarType::Variant);
    QList<int> bounds;
    for (int dim = 1; dim <= a.Dims(); ++dim) {
        bounds << a.LBound(dim) << a.UBound(dim);
    }
    arg << bounds;
    arg.beginArray(QMetaType::fromType<WireValue>());
    for (const Variant& element : a.Storage()) {
        arg << WireValue{element};
    }
    arg.endArray();
    arg.endStructure();
    return arg;
}

const QDBusArgument& operator>>(const QDBusArgument& arg, WireArray& value) {
    int elementType = 0;
    QList<int> bounds;
    std::vector<Variant> elements;
    bool wellFormed = true;
    arg.beginStructure();
    arg >> elementType >> bounds;
    arg.beginArray();
    while (!arg.atEnd()) {
        WireValue element;
        arg >> element;
        wellFormed = wellFormed && element.wellFormed;
        elements.push_back(std::move(element.value));
    }
    arg.endArray();
    arg.endStructure();

    value = {Variant(), false};
    const bool stringElements = elementType == static_cast<int>(VarType::String);
    if (!wellFormed || (!stringElements && elementType != static_cast<int>(VarType::Variant)) ||
        (bounds.size() != 2 && bounds.size() != 4)) {
        return arg;
    }
    // A string array holds strings only, as every sender writes it.
    if (stringElements && std::any_of(elements.begin(), elements.end(), [](const Variant& e) {
            return e.Type() != VarType::String;
        })) {
        return arg;
    }
    // The bounds must describe exactly the elements that came, before anything is allocated.
    // An extent beyond what came is counted as one more than came: the product still differs
    // from it (unless another extent is empty) and cannot overflow.
    const auto came = static_cast<std::int64_t>(elements.size());
    std::int64_t count = 1;
    for (qsizetype i = 0; i < bounds.size(); i += 2) {
        const std::int64_t extent = std::int64_t{bounds[i + 1]} - bounds[i] + 1;
        if (extent < 0) {
            return arg;
        }
        count *= std::min(extent, came + 1);
    }
    if (count != came) {
        return arg;
    }
    const auto type =
        stringElements ? SafeArray::ElementType::String : SafeArray::ElementType::Variant;
    SafeArray a;
    if (bounds.size() == 2) {
        a = SafeArray::OneDim(bounds[0], bounds[1], type);
        for (std::size_t k = 0; k < elements.size(); ++k) {
            a.Set(bounds[0] + static_cast<std::int32_t>(k), elements[k]);
        }
    } else {
        a = SafeArray::TwoDim(bounds[0], bounds[1], bounds[2], bounds[3], type);
        const auto rows = static_cast<std::size_t>(std::int64_t{bounds[1]} - bounds[0] + 1);
        for (std::size_t k = 0; k < elements.size(); ++k) {
            a.Set(bounds[0] + static_cast<std::int32_t>(k % rows),
                  bounds[2] + static_cast<std::int32_t>(k / rows), elements[k]);
        }
    }
    value = {Variant(std::move(a)), true};
    return arg;
}

WireList ToWire(std::span<const Variant> values) {
    WireList list;
    list.reserve(static_cast<qsizetype>(values.size()));
    for (const Variant& v : values) {
        RequireWireable(v);
        list.append(WireValue{v});
    }
    return list;
}

std::vector<Variant> FromWire(const WireList& list) {
    std::vector<Variant> values;
    values.reserve(static_cast<std::size_t>(list.size()));
    for (const WireValue& w : list) {
        if (!w.wellFormed) {
            Malformed();
        }
        values.push_back(w.value);
    }
    return values;
}

WireList WireListArgument(const QVariant& argument) {
    if (!argument.canConvert<QDBusArgument>() ||
        argument.value<QDBusArgument>().currentSignature() != QLatin1String("a(iv)")) {
        Malformed();
    }
    return qdbus_cast<WireList>(argument);
}

Variant WireValueArgument(const QVariant& argument) {
    if (!argument.canConvert<QDBusArgument>() ||
        argument.value<QDBusArgument>().currentSignature() != QLatin1String("(iv)")) {
        Malformed();
    }
    const auto w = qdbus_cast<WireValue>(argument);
    if (!w.wellFormed) {
        Malformed();
    }
    return w.value;
}

}  // namespace kw::link
