#pragma once

// Values as a faulty peer might write them on the wire: any kind with any payload, arrays with
// any element type, bounds and elements. The wire test and the wire's fuzz target send them.
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QList>
#include <QVariant>

namespace kw::link::testing {

struct RawValue {
    int kind = 0;
    QVariant payload;
};
struct RawArray {
    int elementType = 12;
    QList<int> bounds;
    QList<RawValue> elements;
};

}  // namespace kw::link::testing

Q_DECLARE_METATYPE(kw::link::testing::RawValue)
Q_DECLARE_METATYPE(kw::link::testing::RawArray)

namespace kw::link::testing {

inline QDBusArgument& operator<<(QDBusArgument& arg, const RawValue& v) {
    arg.beginStructure();
    arg << v.kind << QDBusVariant(v.payload);
    arg.endStructure();
    return arg;
}
inline const QDBusArgument& operator>>(const QDBusArgument& arg, RawValue& v) {
    QDBusVariant payload;
    arg.beginStructure();
    arg >> v.kind >> payload;
    arg.endStructure();
    v.payload = payload.variant();
    return arg;
}
inline QDBusArgument& operator<<(QDBusArgument& arg, const RawArray& a) {
    arg.beginStructure();
    arg << a.elementType << a.bounds << a.elements;
    arg.endStructure();
    return arg;
}
inline const QDBusArgument& operator>>(const QDBusArgument& arg, RawArray& a) {
    arg.beginStructure();
    arg >> a.elementType >> a.bounds >> a.elements;
    arg.endStructure();
    return arg;
}

inline void RegisterRawTypes() {
    qDBusRegisterMetaType<RawValue>();
    qDBusRegisterMetaType<RawArray>();
    qDBusRegisterMetaType<QList<RawValue>>();
}

}  // namespace kw::link::testing
