// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <typeinfo>
#include <utility>

#include "platform/foundation/Object.h"

namespace platform {

/// A typed member function together with the spelling under which the phone finds it: rows, bar buttons and
/// observers carry one, so that a screen's table can be printed and compared by selector. Empty when made by
/// default (a row without a setter).
template <class Signature>
class Method;

/// What a selector names, for arguments and a result of these types. Empty, or with both selector and
/// function.
template <class R, class... A>
class Method<R(A...)> {
  public:
    Method() = default;
    Method(std::string selector, std::function<R(Object&, A...)> function)
        : function_(std::move(function)), selector_(std::move(selector)) {}

    explicit operator bool() const { return static_cast<bool>(function_); }
    /// The selector with its colons; "" for the empty method.
    const std::string& selector() const { return selector_; }
    /// Calls the function on the target. A target of another class, or an empty method, gives R's default.
    R operator()(Object& target, A... arguments) const {
        if (!function_) return R();
        return function_(target, std::forward<A>(arguments)...);
    }

  private:
    std::function<R(Object&, A...)> function_;
    std::string selector_;
};

/// Binds a selector to the member function that it names: `method("shareAction:", &Screen::shareAction)`.
template <class T, class R, class... A>
Method<R(A...)> method(std::string selector, R (T::*function)(A...)) {
    return Method<R(A...)>(std::move(selector), [function](Object& target, A... arguments) -> R {
        // The usual target is of the very class; only one derived from it needs the long look.
        auto* typed = typeid(target) == typeid(T) ? static_cast<T*>(&target) : dynamic_cast<T*>(&target);
        if (typed != nullptr) return (typed->*function)(std::forward<A>(arguments)...);
        return R();
    });
}

}  // namespace platform
