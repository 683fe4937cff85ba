// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Class.h"
#include "platform/foundation/Object.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::errorOf;
using doubles::required;

class ClassTestBase : public platform::Object {
    PLATFORM_CLASS(ClassTestBase, platform::Object)
};
class ClassTestDerived : public ClassTestBase {
    PLATFORM_CLASS(ClassTestDerived, ClassTestBase)
};
class ClassTestOther : public platform::Object {
    PLATFORM_CLASS(ClassTestOther, platform::Object)
};
class ClassTestAbstract : public ClassTestBase {
    PLATFORM_CLASS(ClassTestAbstract, ClassTestBase)
  public:
    explicit ClassTestAbstract(int number) : number_(number) {}
    int number() const { return number_; }

  private:
    int number_;
};
PLATFORM_REGISTER_CLASS(ClassTestBase)
PLATFORM_REGISTER_CLASS(ClassTestDerived)
PLATFORM_REGISTER_CLASS(ClassTestOther)
PLATFORM_REGISTER_ABSTRACT_CLASS(ClassTestAbstract)

using platform::Class;
using platform::ClassRegistry;
using platform::Object;

TEST(Class, isSubclassOf_walksUpToTheRoot) {
    const ClassTestDerived derived;
    EXPECT_EQ(derived.getClass().name(), "ClassTestDerived");
    EXPECT_TRUE(derived.isKindOfClass(ClassTestDerived::staticClass()));
    EXPECT_TRUE(derived.isKindOfClass(ClassTestBase::staticClass()));
    EXPECT_TRUE(derived.isKindOfClass(Object::staticClass()));
    EXPECT_FALSE(derived.isKindOfClass(ClassTestOther::staticClass()));
    EXPECT_FALSE(ClassTestBase::staticClass().isSubclassOf(ClassTestDerived::staticClass()));
}

TEST(Class, abstractClass_isRegisteredButNotMade) {
    const Class* cls = ClassRegistry::shared().find("ClassTestAbstract");
    ASSERT_EQ(cls, &ClassTestAbstract::staticClass());
    EXPECT_FALSE(cls->canBeMade());
    EXPECT_EQ(cls->make(), nullptr);
    EXPECT_EQ(ClassTestAbstract(3).number(), 3);
}

TEST(ClassRegistry, make_givesANewInstanceOfTheNamedClass) {
    const auto made = ClassRegistry::shared().make<ClassTestBase>("ClassTestDerived");
    ASSERT_TRUE(made);
    EXPECT_EQ(&(*made)->getClass(), &ClassTestDerived::staticClass());
    EXPECT_NE(*made, *required(ClassRegistry::shared().make<ClassTestBase>("ClassTestDerived")));
}

TEST(ClassRegistry, make_tellsItsThreeFailuresApart) {
    const ClassRegistry& registry = ClassRegistry::shared();
    EXPECT_EQ(errorOf(registry.make<Object>("NoSuch")), "There is no class named \"NoSuch\".");
    EXPECT_EQ(errorOf(registry.make<ClassTestBase>("ClassTestOther")),
              "The class \"ClassTestOther\" is no \"ClassTestBase\".");
    EXPECT_EQ(errorOf(registry.make<ClassTestBase>("ClassTestAbstract")),
              "The class \"ClassTestAbstract\" cannot be made by its name.");
}

TEST(ClassRegistry, sameClassTwice_isNoDuplicate) {
    ClassRegistry registry;
    EXPECT_TRUE(registry.add(ClassTestBase::staticClass()));
    EXPECT_TRUE(registry.add(ClassTestBase::staticClass()));
    EXPECT_TRUE(registry.takeDuplicates().empty());
}

TEST(ClassRegistry, nameTakenByAnotherClass_isKeptAndRememberedOnce) {
    ClassRegistry registry;
    const Class first("Name", nullptr, nullptr);
    const Class second("Name", nullptr, nullptr);
    EXPECT_TRUE(registry.add(first));
    EXPECT_FALSE(registry.add(second));
    EXPECT_FALSE(registry.add(second));
    EXPECT_EQ(registry.find("Name"), &first);
    EXPECT_EQ(registry.takeDuplicates(), std::vector<std::string>{"Name"});
    EXPECT_TRUE(registry.takeDuplicates().empty());
}

TEST(ClassRegistry, classesAddedWhileABundleLoads_belongToTheInnermostOne) {
    ClassRegistry registry;
    const Class own("Own", nullptr, nullptr);
    const Class outer("Outer", nullptr, nullptr);
    const Class inner("Inner", nullptr, nullptr);
    const Class late("Late", nullptr, nullptr);
    registry.add(own);
    registry.beginLoading("/outer.bundle");
    registry.add(outer);
    registry.beginLoading("/inner.bundle");
    registry.add(inner);
    registry.endLoading();
    registry.add(late);
    registry.endLoading();
    EXPECT_EQ(registry.bundlePath(own), "");
    EXPECT_EQ(registry.bundlePath(outer), "/outer.bundle");
    EXPECT_EQ(registry.bundlePath(inner), "/inner.bundle");
    EXPECT_EQ(registry.bundlePath(late), "/outer.bundle");
    const Class stranger("Own", nullptr, nullptr);
    registry.beginLoading("/other.bundle");
    registry.add(stranger);
    registry.endLoading();
    EXPECT_EQ(registry.bundlePath(stranger), "");
}

TEST(ClassRegistry, superclassSetLater_changesTheFamily) {
    const Class declared("Declared", nullptr, nullptr);
    const Class chosen("Chosen", nullptr, nullptr);
    const Class cls("Class", &declared, nullptr);
    const Class derived("Derived", &cls, nullptr);
    ClassRegistry::setSuperclass(cls, chosen);
    EXPECT_EQ(&chosen, cls.superclass());
    EXPECT_TRUE(derived.isSubclassOf(chosen));
    EXPECT_FALSE(derived.isSubclassOf(declared));
}

TEST(ClassRegistry, loadAgain_doesAnewWhatAClassDoesWhenItIsLoaded) {
    ClassRegistry& registry = ClassRegistry::shared();
    static const Class root("LoadAgainRoot", nullptr, {});
    static const Class other("LoadAgainOther", nullptr, {});
    static const Class chooser("LoadAgainChooser", &root, {});
    static bool choosesOther = true;
    registry.runAtLoad(chooser, [] {
        if (choosesOther) ClassRegistry::setSuperclass(chooser, other);
    });
    EXPECT_EQ(chooser.superclass(), &other) << "at once, too";
    choosesOther = false;
    registry.loadAgain();
    EXPECT_EQ(chooser.superclass(), &root) << "what was chosen before is forgotten";
    choosesOther = true;
    registry.loadAgain();
    EXPECT_EQ(chooser.superclass(), &other);
}

TEST(ClassRegistry, removedClass_isNotFoundAndCanBeAddedAgain) {
    ClassRegistry& registry = ClassRegistry::shared();
    static const Class cls("RemovedClass", nullptr, {});
    registry.add(cls);
    registry.remove("RemovedClass");
    registry.remove("RemovedClass");
    EXPECT_EQ(registry.find("RemovedClass"), nullptr);
    EXPECT_TRUE(registry.add(cls));
    EXPECT_EQ(registry.find("RemovedClass"), &cls);
}

TEST(Object, sharedAndWeak_areEmptyWhenNobodyOwnsTheObject) {
    ClassTestDerived unowned;
    EXPECT_EQ(unowned.shared(&unowned), nullptr);
    const auto owned = std::make_shared<ClassTestDerived>();
    EXPECT_EQ(owned->shared(owned.get()), owned);
    EXPECT_EQ(owned->weak(owned.get()).lock(), owned);
}

}  // namespace
