// An optional bound member function: a target object of any class and one of its member functions
// taking an Arg* and returning int. Header-only, so that the rules model may hold one without
// depending on anything that draws.
#pragma once

#include <cstring>

class Window;

template <class Arg> class DelegateOf {
  public:
    DelegateOf() = default;

    template <class T> DelegateOf(T* target, int (T::*method)(Arg*)) { bind(target, method); }

    // Binds by plain assignment; allowed at any time, also from inside the function being called.
    template <class T> void bind(T* target, int (T::*method)(Arg*)) {
        using Method = int (T::*)(Arg*);
        static_assert(sizeof(Method) <= sizeof(method_), "member function pointer too large");
        target_ = target;
        std::memset(method_, 0, sizeof(method_));
        std::memcpy(method_, &method, sizeof(Method));
        call_ = &invoke<T>;
    }

    void clear() { *this = DelegateOf(); }

    bool bound() const { return target_ != nullptr && call_ != nullptr; }
    explicit operator bool() const { return bound(); }

    // An empty delegate, or one with a null target, does nothing and gives 0. The target and the
    // method are copied out before the call, so the function may rebind this delegate or delete
    // the object that holds it.
    int operator()(Arg* argument) const {
        if (!bound()) return 0;
        void* target = target_;
        unsigned char method[sizeof(method_)];
        std::memcpy(method, method_, sizeof(method_));
        auto call = call_;
        return call(target, method, argument);
    }

    // Two delegates are equal when they name the same target and the same function.
    bool operator==(const DelegateOf& other) const {
        return target_ == other.target_ && call_ == other.call_ &&
               std::memcmp(method_, other.method_, sizeof(method_)) == 0;
    }

  private:
    template <class T> static int invoke(void* target, const unsigned char* bytes, Arg* argument) {
        using Method = int (T::*)(Arg*);
        Method method;
        std::memcpy(&method, bytes, sizeof(Method));
        return (static_cast<T*>(target)->*method)(argument);
    }

    void* target_ = nullptr;
    alignas(void*) unsigned char method_[2 * sizeof(void*)] = {};
    int (*call_)(void*, const unsigned char*, Arg*) = nullptr;
};

// The toolkit's own delegate: handlers of window events, given a window.
using Delegate = DelegateOf<Window>;
