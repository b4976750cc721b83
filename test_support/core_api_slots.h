// Where each operation of a table shared with the core sits. The core calls
// them by position, so the declaration order is the contract; on the Itanium
// C++ ABI a pointer to a virtual member function holds the byte offset of its
// table entry, which gives each operation's slot without calling it.
//
// Each list is written once, as a template: given a shared declaration it
// checks the order, given one of the module's classes that the class fills
// exactly those slots. Slots are counted as g++ lays them out: a virtual
// destructor takes two entries (complete and deleting).
#pragma once

#if defined(__GNUC__) && !defined(_WIN32) && (defined(__x86_64__) || defined(__i386__))
#define PLR_ITANIUM_SLOTS 1

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace tvr::plr::test {

template <class MemberPointer>
long slotOf(MemberPointer pointer) {
    static_assert(sizeof(pointer) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t words[2];
    std::memcpy(words, &pointer, sizeof words);
    if ((words[0] & 1) == 0) return -1;  // not a virtual function
    return static_cast<long>((words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

// Expects the operations to sit in consecutive slots from `first`.
template <class... MemberPointer>
void expectSlots(const char* table, long first, MemberPointer... operations) {
    const long slots[] = {slotOf(operations)...};
    for (long i = 0; i < static_cast<long>(sizeof...(operations)); ++i)
        EXPECT_EQ(slots[i], first + i) << table << ", operation " << i + 1 << " of the list";
}

// The core's list numbers from 1 and counts the destructor (13) once:
// operations 1-12 are at slot n-1, those from 14 on at slot n. A second base
// placed first would shift them all.
template <class N>
void expectNodeSlots(const char* table) {
    expectSlots(table, 0, &N::executeExtension, &N::getSupportedExtensions, &N::isExtensionSupported, &N::show,
                &N::hide, &N::isVisible, &N::select, &N::isReleased, &N::acquireParent, &N::getChildCount,
                &N::acquireChild, &N::releaseNode);
    expectSlots(table, 14, &N::getExtension, &N::exportExtensions, &N::release, &N::reacquire, &N::detach,
                &N::acquireSnapshot, &N::createHelperSnapshot, &N::acquireMeshSnapshot, &N::acquireLensSnapshot,
                &N::acquireShape, &N::releaseShape, &N::releaseLensSnapshot, &N::releaseMeshSnapshot,
                &N::releaseHelperSnapshot, &N::releaseSnapshot, &N::isSameNode, &N::setParent, &N::truncateKeys,
                &N::setName, &N::getName, &N::deleteNode, &N::cloneNode);
}

// Every snapshot kind begins with the extension operations.
template <class T>
void expectTransformSlots(const char* table) {
    expectSlots(table, 0, &T::executeExtension, &T::getSupportedExtensions, &T::isExtensionSupported);
    expectSlots(table, 3, &T::setLocalMatrix, &T::getLocalMatrix, &T::getGlobalMatrix, &T::setGlobalMatrix,
                &T::getTime);
}

template <class L>
void expectLensSlots(const char* table) {
    expectSlots(table, 3, &L::setFov, &L::getFov, &L::getFovType, &L::setFovType, &L::setLensValue, &L::getLensValue,
                &L::getTime, &L::getPerspective);
}

template <class S>
void expectShapeSlots(const char* table) {
    expectSlots(table, 3, &S::getShapeKind, &S::getShapeIndex, &S::setShapeIndex, &S::getLength, &S::getPoint,
                &S::getTangent);
}

// The mesh kind's destructor (6 and 7) stands before getMesh.
template <class M>
void expectMeshSlots(const char* table) {
    expectSlots(table, 3, &M::setMesh, &M::getMeshValue, &M::intersectRay);
    expectSlots(table, 8, &M::getMesh);
}

template <class H>
void expectHelperSlots(const char* table) {
    expectSlots(table, 3, &H::setHelperMesh, &H::setHelperColor, &H::setWireframeMode, &H::setBackfaceCulling);
}

}  // namespace tvr::plr::test

#endif
