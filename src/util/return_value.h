// Carrier through which a result is written into storage the caller owns.
#pragma once

namespace tvr::util {

template <class T>
class ReturnValue {
public:
    explicit ReturnValue(T* target) : m_target(target) {}

    // Declared in this order, destructor last: the core calls them by position.
    virtual T* get() { return m_target; }
    virtual const T* get() const { return m_target; }
    // Copies `value` into the caller's object (a CMesh through its own copy
    // operation) and answers the same pointer; without a target nothing happens.
    virtual T* set(const T& value) {
        if (m_target != nullptr) {
            *m_target = value;
        }
        return m_target;
    }
    virtual ~ReturnValue() = default;

private:
    T* m_target;
};

}  // namespace tvr::util
