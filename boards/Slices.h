// Work that can be left and taken up again where it was: a function that pauses. What takes longer
// than a frame is done in slices between the events of a window, on its thread. No Qt.
#pragma once

#include <coroutine>
#include <exception>
#include <utility>

namespace ladderwise {

/// A function that pauses at every `co_yield Pause`. It begins with the first Advance, and is given
/// up where it stands when this goes. What is handed to it by reference has to outlive it.
class Slices {
public:
    struct Pausing {};

    struct promise_type {
        Slices get_return_object() { return Slices(Handle::from_promise(*this)); }
        std::suspend_always initial_suspend() noexcept { return {}; }
        std::suspend_always final_suspend() noexcept { return {}; }
        std::suspend_always yield_value(Pausing) noexcept { return {}; }
        void return_void() {}
        void unhandled_exception() { std::terminate(); }  // nothing here throws
    };

    Slices(Slices&& other) noexcept : handle(std::exchange(other.handle, {})) {}
    Slices& operator=(Slices&&) = delete;
    ~Slices() {
        if (handle) handle.destroy();
    }

    /// Goes on to the next pause; false: it has come to its end.
    bool Advance() {
        if (!handle.done()) handle.resume();
        return !handle.done();
    }

    void Finish() {
        while (Advance()) {
        }
    }

private:
    using Handle = std::coroutine_handle<promise_type>;
    explicit Slices(Handle of) : handle(of) {}

    Handle handle;
};

inline constexpr Slices::Pausing Pause{};

}  // namespace ladderwise
