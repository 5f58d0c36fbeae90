#ifndef NIVARO_NVTYPES_H
#define NIVARO_NVTYPES_H

#include <QtGlobal>

namespace nivaro {

// Object uids are 32-bit everywhere: in records, tasks, indexes and the store file.
using TYPE_ID = quint32;

// Kinds of typed links between objects (ObjectInfo::addChild / addParent).
// The numbers are stored in the store file: never renumber, only append.
using LinkKind = quint16;
namespace link {
constexpr LinkKind CARD = 1;          // employee -> cards
constexpr LinkKind ACCESS_ZONE = 2;   // employee -> access zones
constexpr LinkKind POLICY = 3;        // employee -> access policies
constexpr LinkKind JOB = 4;           // employee -> job
constexpr LinkKind USER = 5;          // employee -> client user account
constexpr LinkKind VEHICLE = 6;       // employee -> vehicles
constexpr LinkKind LOCKER = 7;        // employee -> locker cells
constexpr LinkKind DEVICE = 8;        // device group -> devices
} // namespace link

} // namespace nivaro

#endif
