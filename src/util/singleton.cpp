#include "util/singleton.h"

#include <algorithm>

namespace tvr::util {

void SingletonCollector::add(SingletonReference* ref) { m_refs.push_back(ref); }

void SingletonCollector::remove(SingletonReference* ref) {
    m_refs.erase(std::remove(m_refs.begin(), m_refs.end(), ref), m_refs.end());
}

void SingletonCollector::destroyAll() {
    while (m_refs.size() >= 2) {
        const std::size_t before = m_refs.size();
        SingletonReference* last = m_refs.back();
        last->destroyInstance();
        // A reference whose class no longer names it as its instance is not
        // removed by its deletion; drop it so the loop always ends.
        if (m_refs.size() >= before && !m_refs.empty() && m_refs.back() == last) {
            m_refs.pop_back();
        }
    }
    if (m_refs.size() == 1) {
        // The collector itself: this deletes `this`.
        m_refs.front()->destroyInstance();
    }
}

SingletonCollector::~SingletonCollector() { m_refs.clear(); }

namespace detail {

void unregisterSingleton(SingletonReference* ref) {
    if (SingletonCollector* collector = SingletonCollector::instance()) {
        collector->remove(ref);
    }
}

}  // namespace detail
}  // namespace tvr::util
