#pragma once

#include <QPointer>

#include <utility>

/// Wraps a callback that works on `owner` so that it does nothing once the owner is gone. There
/// is no cancelling of a request: a window that may be thrown away before its answer arrives
/// wraps its callbacks. To be called on the owner's thread.
template <class Owner, class Function>
auto guarded(Owner* owner, Function function)
{
    return [alive = QPointer<Owner>(owner), call = std::move(function)](auto&&... arguments) {
        if (alive)
            call(std::forward<decltype(arguments)>(arguments)...);
    };
}
