// Intrusive reference counting: the polymorphic base of all storage blocks and the pointer to them.
#pragma once

#include <atomic>
#include <cstdint>

namespace vorel {

template <class X>
class Ptr;

namespace numerel {

/// Base of everything that is held through a `Ptr`. A fresh object has no holder. The count is the
/// only data of the library that threads may change at the same time.
class ref_counted {
public:
    ref_counted() noexcept = default;
    ref_counted(const ref_counted&) = delete;
    ref_counted& operator=(const ref_counted&) = delete;
    virtual ~ref_counted() = default;

    /// Number of holders.
    std::atomic<std::int32_t> count{0};

private:
    template <class X>
    friend class vorel::Ptr;

    void __destroy() { delete this; }
};

} // namespace numerel

/// Shared pointer to a `ref_counted` object; one machine word. May be null.
template <class X>
class Ptr {
public:
    /// Null.
    Ptr() noexcept = default;
    /// One more holder of the object.
    Ptr(X* object) noexcept : pointer(object) { take(object); }
    /// One more holder of the same object.
    Ptr(const Ptr& other) noexcept : pointer(other.pointer) { take(other.pointer); }
    /// Takes the object over; the source is null then.
    Ptr(Ptr&& other) noexcept : pointer(other.pointer) { other.pointer = nullptr; }
    ~Ptr() { let_go(pointer); }

    /// The new object is taken before the old one is let go: assigning an object to its only
    /// holder is safe.
    Ptr& operator=(X* object) noexcept
    {
        X* const old = pointer;
        take(object);
        pointer = object;
        let_go(old);
        return *this;
    }
    /// As above.
    Ptr& operator=(const Ptr& other) noexcept { return *this = other.pointer; }
    /// Takes the object over; the source, if another pointer, is null then.
    Ptr& operator=(Ptr&& other) noexcept
    {
        X* const taken = other.pointer;
        other.pointer = nullptr;
        X* const old = pointer;
        pointer = taken;
        let_go(old);
        return *this;
    }

    /// The object, or null.
    X* get() const noexcept { return pointer; }
    /// A member of the object.
    X* operator->() const noexcept { return pointer; }
    /// The object.
    X& operator*() const noexcept { return *pointer; }
    /// Whether there is an object.
    explicit operator bool() const noexcept { return pointer != nullptr; }

    friend bool operator==(const Ptr& a, const Ptr& b) noexcept { return a.pointer == b.pointer; }
    friend bool operator!=(const Ptr& a, const Ptr& b) noexcept { return a.pointer != b.pointer; }

private:
    static void take(X* object) noexcept
    {
        if (object) object->count.fetch_add(1, std::memory_order_relaxed);
    }
    static void let_go(X* object) noexcept
    {
        // Release orders this holder's writes before the deletion, acquire orders the deletion
        // after every other holder's.
        if (object && object->count.fetch_sub(1, std::memory_order_acq_rel) == 1)
            static_cast<numerel::ref_counted*>(object)->__destroy();
    }

    X* pointer = nullptr;
};

} // namespace vorel
