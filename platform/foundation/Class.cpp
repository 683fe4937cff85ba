// SPDX-License-Identifier: MIT
#include "platform/foundation/Class.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/Object.h"

namespace platform {

Class::Class(std::string name, const Class* superclass, Factory factory)
    : name_(std::move(name)),
      declaredSuperclass_(superclass),
      superclass_(superclass),
      factory_(std::move(factory)) {}

std::shared_ptr<Object> Class::make() const {
    return factory_ ? factory_() : nullptr;
}

bool Class::isSubclassOf(const Class& other) const {
    for (const Class* cls = this; cls != nullptr; cls = cls->superclass_) {
        if (cls == &other) return true;
    }
    return false;
}

ClassRegistry& ClassRegistry::shared() {
    // Never destroyed: bundles stay loaded to the end, and their static destructors may still look classes
    // up.
    static ClassRegistry& registry = *new ClassRegistry;
    return registry;
}

bool ClassRegistry::add(const Class& cls) {
    const std::scoped_lock lock(mutex_);
    const std::string bundlePath = loading_.empty() ? std::string() : loading_.back();
    const auto [entry, added] = entries_.try_emplace(cls.name(), Entry{&cls, bundlePath});
    if (added || entry->second.cls == &cls) return true;
    if (std::ranges::find(duplicates_, cls.name()) == duplicates_.end()) duplicates_.push_back(cls.name());
    return false;
}

const Class* ClassRegistry::find(std::string_view name) const {
    const std::scoped_lock lock(mutex_);
    const auto entry = entries_.find(name);
    return entry == entries_.end() ? nullptr : entry->second.cls;
}

void ClassRegistry::runAtLoad(const Class& cls, std::function<void()> load) {
    load();
    const std::scoped_lock lock(mutex_);
    loads_.push_back({&cls, std::move(load)});
}

void ClassRegistry::loadAgain() {
    std::vector<Load> loads;
    {
        const std::scoped_lock lock(mutex_);
        loads = loads_;
    }
    for (const Load& load : loads) load.cls->superclass_ = load.cls->declaredSuperclass_;
    for (const Load& load : loads) load.run();
}

void ClassRegistry::remove(std::string_view name) {
    const std::scoped_lock lock(mutex_);
    const auto entry = entries_.find(name);
    if (entry != entries_.end()) entries_.erase(entry);
}

std::vector<std::string> ClassRegistry::takeDuplicates() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(duplicates_, {});
}

void ClassRegistry::beginLoading(std::string path) {
    const std::scoped_lock lock(mutex_);
    loading_.push_back(std::move(path));
}

void ClassRegistry::endLoading() {
    const std::scoped_lock lock(mutex_);
    if (!loading_.empty()) loading_.pop_back();
}

std::string ClassRegistry::bundlePath(const Class& cls) const {
    const std::scoped_lock lock(mutex_);
    const auto entry = entries_.find(cls.name());
    if (entry == entries_.end() || entry->second.cls != &cls) return {};
    return entry->second.bundlePath;
}

Result<std::shared_ptr<Object>> ClassRegistry::makeObject(std::string_view name) const {
    const Class* cls = find(name);
    if (cls == nullptr) return failure("There is no class named \"" + std::string(name) + "\".");
    if (!cls->canBeMade()) {
        return failure("The class \"" + std::string(name) + "\" cannot be made by its name.");
    }
    return cls->make();
}

std::unexpected<Error> ClassRegistry::wrongBase(std::string_view name, std::string_view base) {
    return failure("The class \"" + std::string(name) + "\" is no \"" + std::string(base) + "\".");
}

}  // namespace platform
