#pragma once

#include <gtest/gtest.h>

/// An element that knows how many of its kind live, and whether it was made and destroyed properly: moved as bytes it
/// no longer knows itself.
class Counted {
public:
    Counted(int value = 0) : m_value(value), m_self(this) { ++s_alive; }
    Counted(const Counted& other) : m_value(other.value()), m_self(this) { ++s_alive; }
    Counted& operator=(const Counted& other) {
        check();
        m_value = other.value();
        return *this;
    }
    ~Counted() {
        check();
        m_self = nullptr;
        --s_alive;
    }

    int value() const {
        check();
        return m_value;
    }
    friend bool operator<(const Counted& a, const Counted& b) { return a.value() < b.value(); }
    friend bool operator==(const Counted& a, const Counted& b) { return a.value() == b.value(); }

    static int alive() { return s_alive; }

private:
    void check() const {
        if (m_self != this) ADD_FAILURE() << "an element that was never made, moved as bytes or destroyed before";
    }
    int m_value;
    const Counted* m_self;
    static inline int s_alive = 0;
};
