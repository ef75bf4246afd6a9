#pragma once

namespace nqp::base {

// One typed event with at most one handler: an object and a member function of it.
//
// A handler is bound once, by the window that owns the control:
//     Timer1.Timer.calls<&Form4::Timer1_Timer>(this);
// The pair is an object pointer and a static thunk, so a wrong signature does not compile and a
// call stack shows the handler's own name. The bound object must outlive the event.
template <class... Args>
class Event {
public:
    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    template <auto Handler, class Object>
    void calls(Object* object) {
        object_ = object;
        thunk_ = [](void* target, Args... args) {
            (static_cast<Object*>(target)->*Handler)(args...);
        };
    }

    // Raises the event; without a handler nothing happens. What the handler throws comes out here.
    void operator()(Args... args) const {
        if (thunk_ != nullptr) thunk_(object_, args...);
    }

private:
    void* object_ = nullptr;
    void (*thunk_)(void*, Args...) = nullptr;
};

}  // namespace nqp::base
