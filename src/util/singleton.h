// Lazily created single instances, destroyed together at module end.
//
// Singleton<T>::instance() creates T on first use and registers it with the
// SingletonCollector; SingletonCollector::destroyAll() deletes every registered
// instance, last created first, and finally the collector itself. The statics
// live in this header, so each binary (the module, the core, a test) has its
// own set; that is intended, since each side ends its own singletons.
#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <vector>

namespace tvr::util {

// What the collector keeps a pointer to. For a class whose Singleton<T> base is
// not the first base, this points into the middle of the object, so it is only
// ever used to call destroyInstance, never cast back.
class SingletonReference {
public:
    virtual void destroyInstance() = 0;
    virtual ~SingletonReference() = default;

protected:
    SingletonReference() = default;
    SingletonReference(const SingletonReference&) = default;
    SingletonReference& operator=(const SingletonReference&) = default;
};

template <class T>
class Singleton : public SingletonReference {
public:
    // The instance, created and registered on first use; null if allocation fails
    // (the next call tries again).
    static T* instance();

    // Deletes the class's instance (whichever object it is called on).
    void destroyInstance() override;

    ~Singleton() override;

    Singleton(const Singleton&) = delete;
    Singleton& operator=(const Singleton&) = delete;

protected:
    Singleton() = default;

private:
    static inline T* s_instance = nullptr;
    // The Singleton<T> part of s_instance, taken while the object is whole, so the
    // destructor can recognise the instance without converting a dying T*.
    static inline Singleton* s_self = nullptr;
    // Never set by this module; a nonzero value would keep destroyInstance from
    // deleting the instance.
    static inline int s_keep = 0;
};

class SingletonCollector : public Singleton<SingletonCollector> {
public:
    // Appends to the registration order.
    void add(SingletonReference* ref);
    // Erases every occurrence; the others keep their order.
    void remove(SingletonReference* ref);
    // Destroys every registered instance, last registered first, then the collector
    // itself; `this` is gone when it returns.
    void destroyAll();

    std::size_t size() const { return m_refs.size(); }
    SingletonReference* at(std::size_t i) const { return i < m_refs.size() ? m_refs[i] : nullptr; }

private:
    friend class Singleton<SingletonCollector>;
    SingletonCollector() = default;
    ~SingletonCollector() override;

    std::vector<SingletonReference*> m_refs;
};

namespace detail {
// Removes a dying singleton object from the collector (creating one if none exists,
// so that late destruction stays harmless).
void unregisterSingleton(SingletonReference* ref);
}  // namespace detail

template <class T>
T* Singleton<T>::instance() {
    if (s_instance != nullptr) {
        return s_instance;
    }
    // A throwing constructor frees the memory and lets the exception pass.
    T* created = new (std::nothrow) T;
    if (created == nullptr) {
        return nullptr;
    }
    s_instance = created;
    s_self = created;
    s_keep = 0;
    // For the collector itself this returns the object just stored.
    if (SingletonCollector* collector = SingletonCollector::instance()) {
        collector->add(static_cast<Singleton<T>*>(created));
    }
    return s_instance;
}

template <class T>
void Singleton<T>::destroyInstance() {
    if (s_keep == 0 && s_instance != nullptr) {
        delete s_instance;
    }
    s_instance = nullptr;
    s_self = nullptr;
}

template <class T>
Singleton<T>::~Singleton() {
    // The collector's own array is already gone when its base part dies; removing
    // from it would be a no-op anyway.
    if constexpr (!std::is_same_v<T, SingletonCollector>) {
        detail::unregisterSingleton(this);
    }
    if (s_self == this) {
        s_instance = nullptr;
        s_self = nullptr;
    }
}

}  // namespace tvr::util
