// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace sfx {

// Uninitialised memory from the process heap; nullptr if there is not enough.
void *allocateMemory(std::size_t size);
// Frees memory of allocateMemory(); nullptr is allowed.
void releaseMemory(void *memory);

// A fixed-size array on the heap for plain types. Empty until allocate() has succeeded.
template <typename T>
class Array
{
public:
    Array() = default;
    Array(const Array &) = delete;
    Array &operator=(const Array &) = delete;
    Array(Array &&other) noexcept
        : m_data(std::exchange(other.m_data, nullptr))
        , m_size(std::exchange(other.m_size, 0))
    {
    }
    Array &operator=(Array &&other) noexcept
    {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        return *this;
    }
    ~Array() { releaseMemory(m_data); }

    // Replaces the content by `size` elements of undefined value. Returns false if there is not
    // enough memory; the array is then empty.
    [[nodiscard]] bool allocate(std::size_t size)
    {
        releaseMemory(m_data);
        m_size = 0;
        m_data = nullptr;
        if (size > SIZE_MAX / sizeof(T)) {
            return false;
        }
        m_data = static_cast<T *>(allocateMemory(size == 0 ? 1 : size * sizeof(T)));
        if (m_data == nullptr) {
            return false;
        }
        m_size = size;
        return true;
    }

    T *data() { return m_data; }
    const T *data() const { return m_data; }
    std::size_t size() const { return m_size; }
    // Reduces the size; the memory stays allocated.
    void shrink(std::size_t size) { m_size = size < m_size ? size : m_size; }
    T &operator[](std::size_t index) { return m_data[index]; }
    const T &operator[](std::size_t index) const { return m_data[index]; }

private:
    T *m_data = nullptr;
    std::size_t m_size = 0;
};

// Sole owner of a heap object, like std::unique_ptr, but without an operator new that throws.
template <typename T>
class Owned
{
public:
    Owned() = default;
    explicit Owned(T *object) : m_object(object) {}
    Owned(const Owned &) = delete;
    Owned &operator=(const Owned &) = delete;
    template <typename U>
    Owned(Owned<U> &&other) noexcept : m_object(other.release())
    {
    }
    Owned &operator=(Owned &&other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Owned()
    {
        if (m_object != nullptr) {
            m_object->~T();
            releaseMemory(m_object);
        }
    }

    T *release() { return std::exchange(m_object, nullptr); }
    T *operator->() const { return m_object; }
    T &operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    T *m_object = nullptr;
};

// A new T, or an empty Owned if there is not enough memory.
template <typename T, typename... Arguments>
Owned<T> makeOwned(Arguments &&...arguments)
{
    void *memory = allocateMemory(sizeof(T));
    if (memory == nullptr) {
        return Owned<T>();
    }
    return Owned<T>(new (memory) T(std::forward<Arguments>(arguments)...));
}

} // namespace sfx
