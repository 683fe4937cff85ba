// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"

namespace platform {

class Object;

/// A class as it is known at run time: its name, its superclass, how to make an instance. One static instance
/// for each class, made by PLATFORM_REGISTER_CLASS; it lives as long as its module.
class Class {
  public:
    using Factory = std::function<std::shared_ptr<Object>()>;

    /// A null superclass makes a root; an empty factory makes a class that cannot be made by name.
    Class(std::string name, const Class* superclass, Factory factory);

    const std::string& name() const { return name_; }
    const Class* superclass() const { return superclass_; }
    bool canBeMade() const { return static_cast<bool>(factory_); }
    /// A new instance; empty when the class cannot be made by name.
    std::shared_ptr<Object> make() const;
    /// True for the class itself too.
    bool isSubclassOf(const Class& other) const;

  private:
    friend class ClassRegistry;

    std::string name_;
    const Class* declaredSuperclass_;
    mutable const Class* superclass_;
    Factory factory_;
};

/// Every class that the loaded modules have, by name. Filled by static initialisers, from any thread.
class ClassRegistry {
  public:
    static ClassRegistry& shared();

    /// Adds a class; a name that is taken by another class is not replaced but remembered as a duplicate.
    bool add(const Class& cls);
    /// The class of that name, or null.
    const Class* find(std::string_view name) const;
    /// A new instance of the named class as a T, never an empty pointer. Three different errors, each naming
    /// the class: no such class, a class that cannot be made by name, a class that is no T.
    template <class T>
    Result<std::shared_ptr<T>> make(std::string_view name) const {
        Result<std::shared_ptr<Object>> object = makeObject(name);
        if (!object) return std::unexpected(object.error());
        if (auto typed = std::dynamic_pointer_cast<T>(*object)) return typed;
        return wrongBase(name, T::staticClass().name());
    }

    /// Makes the class one of another family: for what stands on a class that is only chosen at run time. On
    /// the main thread, before anything is made of the class.
    static void setSuperclass(const Class& cls, const Class& superclass) { cls.superclass_ = &superclass; }

    /// Runs what a class does when it is loaded, such as choosing its superclass, and remembers it for
    /// loadAgain().
    void runAtLoad(const Class& cls, std::function<void()> load);
    /// Has every class do anew what it does when it is loaded, as if the program had just started: for a
    /// phone that has become another one. Superclasses that were chosen then are forgotten first. On the main
    /// thread, while nothing made of these classes is left.
    void loadAgain();
    /// Forgets a class, which must be one that no loaded module has; one that it does not know is a success.
    void remove(std::string_view name);

    /// Names that were added twice by different modules since the last call; the call forgets them.
    std::vector<std::string> takeDuplicates();

    /// Classes added while a bundle loads belong to it; `path` is the bundle's path on the phone. A bundle
    /// whose load-time code loads another one nests: each endLoading() ends the innermost.
    void beginLoading(std::string path);
    void endLoading();
    /// The phone path of the bundle that brought the class; empty for the program's own classes.
    std::string bundlePath(const Class& cls) const;

  private:
    Result<std::shared_ptr<Object>> makeObject(std::string_view name) const;
    static std::unexpected<Error> wrongBase(std::string_view name, std::string_view base);

    struct Entry {
        const Class* cls;
        std::string bundlePath;
    };
    mutable std::mutex mutex_;
    struct Load {
        const Class* cls;
        std::function<void()> run;
    };
    std::map<std::string, Entry, std::less<>> entries_;
    std::vector<Load> loads_;
    std::vector<std::string> duplicates_;
    std::vector<std::string> loading_;
};

}  // namespace platform
