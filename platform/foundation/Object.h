// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Class.h"

namespace platform {

/// The root of every class that can be held by a Value, found by its class's name, or called back later.
/// Objects live in std::shared_ptr; whoever only calls back holds std::weak_ptr.
class Object : public std::enable_shared_from_this<Object> {
  public:
    Object() = default;
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    static const Class& staticClass();
    /// The class of this very object, not of a base.
    virtual const Class& getClass() const { return staticClass(); }

    /// Whether the object is of the class or of one derived from it.
    bool isKindOfClass(const Class& cls) const { return getClass().isSubclassOf(cls); }

    /// This object as a shared pointer of a derived type; empty when nobody owns the object.
    template <class T>
    std::shared_ptr<T> shared(T* self) {
        return std::dynamic_pointer_cast<T>(static_cast<Object*>(self)->weak_from_this().lock());
    }
    template <class T>
    std::weak_ptr<T> weak(T* self) {
        return shared(self);
    }
};

}  // namespace platform

/// Inside a class's declaration: its place in the class registry.
#define PLATFORM_CLASS(Type, Super)                      \
  public:                                                \
    using Superclass = Super;                            \
    static const ::platform::Class& staticClass();       \
    const ::platform::Class& getClass() const override { \
        return Type::staticClass();                      \
    }

/// In the class's source, at namespace scope of its namespace: defines the class and registers it, so that it
/// can be found and made by name. The class needs a default constructor.
#define PLATFORM_REGISTER_CLASS(Type)                                              \
    const ::platform::Class& Type::staticClass() {                                 \
        static const ::platform::Class cls(#Type, &Superclass::staticClass(), [] { \
            return std::shared_ptr<::platform::Object>(std::make_shared<Type>());  \
        });                                                                        \
        return cls;                                                                \
    }                                                                              \
    [[maybe_unused]] static const bool registered##Type =                          \
        ::platform::ClassRegistry::shared().add(Type::staticClass());

/// The same for a class that cannot be made by name (it has no default constructor).
#define PLATFORM_REGISTER_ABSTRACT_CLASS(Type)                                          \
    const ::platform::Class& Type::staticClass() {                                      \
        static const ::platform::Class cls(#Type, &Superclass::staticClass(), nullptr); \
        return cls;                                                                     \
    }                                                                                   \
    [[maybe_unused]] static const bool registered##Type =                               \
        ::platform::ClassRegistry::shared().add(Type::staticClass());
