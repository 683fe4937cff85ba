// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UINavigationBar.h"
#include "platform/uikit/UIView.h"

namespace platform {
namespace {

class LayoutCounter : public UIView {
  public:
    LayoutCounter() = default;
    void layoutSubviews() override { ++layouts; }
    int layouts = 0;
};

class ViewWithOwnSubview : public UIView {
  public:
    ViewWithOwnSubview() : inner(std::make_shared<UIView>()) { addSubview(inner); }
    std::shared_ptr<UIView> inner;
};

TEST(UIView, addedView_knowsItsSuperviewAndStandsInFront) {
    const auto holder = std::make_shared<UIView>();
    const auto first = std::make_shared<UIView>();
    const auto second = std::make_shared<UIView>();
    holder->addSubview(first);
    holder->addSubview(second);
    EXPECT_EQ(holder, first->superview());
    EXPECT_EQ((std::vector{first, second}), holder->subviews());
    holder->sendSubviewToBack(second);
    EXPECT_EQ((std::vector{second, first}), holder->subviews());
}

TEST(UIView, viewAddedElsewhere_leavesItsOldSuperview) {
    const auto one = std::make_shared<UIView>();
    const auto other = std::make_shared<UIView>();
    const auto view = std::make_shared<UIView>();
    one->addSubview(view);
    other->addSubview(view);
    EXPECT_TRUE(one->subviews().empty());
    EXPECT_EQ(other, view->superview());
}

TEST(UIView, entryOfTheOwnList_canBeAddedAgainAndRemoved) {
    const auto holder = std::make_shared<UIView>();
    holder->addSubview(std::make_shared<UIView>());
    holder->addSubview(std::make_shared<UIView>());
    const auto first = holder->subviews().front();
    holder->addSubview(holder->subviews().front());
    EXPECT_EQ(first, holder->subviews().back());
    holder->subviews().front()->removeFromSuperview();
    EXPECT_EQ(std::vector{first}, holder->subviews());
}

TEST(UIView, nullItselfOrItsHolder_isNotAdded) {
    const auto holder = std::make_shared<UIView>();
    const auto view = std::make_shared<UIView>();
    holder->addSubview(view);
    holder->addSubview(nullptr);
    holder->addSubview(holder);
    view->addSubview(holder);
    EXPECT_EQ(1U, holder->subviews().size());
    EXPECT_TRUE(view->subviews().empty());
}

TEST(UIView, subviewOfAConstructor_knowsItsSuperview) {
    const auto view = std::make_shared<ViewWithOwnSubview>();
    EXPECT_EQ(view, view->inner->superview());
}

TEST(UIView, viewThatOutlivesItsSuperview_hasNone) {
    const auto view = std::make_shared<UIView>();
    std::weak_ptr<UIView> gone;
    {
        const auto holder = std::make_shared<UIView>();
        gone = holder;
        holder->addSubview(view);
    }
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(nullptr, view->superview());
    view->removeFromSuperview();
}

TEST(UIView, viewWithTag_searchesDepthFirstFromTheViewItself) {
    const auto holder = std::make_shared<UIView>();
    const auto branch = std::make_shared<UIView>();
    const auto deep = std::make_shared<UIView>();
    const auto late = std::make_shared<UIView>();
    deep->setTag(7);
    late->setTag(7);
    holder->addSubview(branch);
    holder->addSubview(late);
    branch->addSubview(deep);
    EXPECT_EQ(deep, holder->viewWithTag(7));
    EXPECT_EQ(holder, holder->viewWithTag(0));
    EXPECT_EQ(nullptr, holder->viewWithTag(8));
}

TEST(UIView, layoutIfNeeded_layoutsOnceForEachReason) {
    const auto view = std::make_shared<LayoutCounter>();
    view->layoutIfNeeded();
    view->layoutIfNeeded();
    EXPECT_EQ(1, view->layouts);
    view->setFrame({10, 10, 0, 0});
    view->layoutIfNeeded();
    EXPECT_EQ(1, view->layouts) << "a move alone changes nothing inside";
    view->setFrame({10, 10, 5, 5});
    view->layoutIfNeeded();
    view->setNeedsLayout();
    view->layoutIfNeeded();
    EXPECT_EQ(3, view->layouts);
}

TEST(UIView, layoutIfNeeded_reachesSubviews) {
    const auto holder = std::make_shared<UIView>();
    const auto view = std::make_shared<LayoutCounter>();
    holder->addSubview(view);
    holder->layoutIfNeeded();
    EXPECT_EQ(1, view->layouts);
}

TEST(UIView, widerView_stretchesSubviewsOfFlexibleWidthOnly) {
    const auto holder = std::make_shared<UIView>(Rect{0, 0, 100, 50});
    const auto flexible = std::make_shared<UIView>(Rect{-40, 0, 140, 20});
    const auto fixed = std::make_shared<UIView>(Rect{0, 0, 10, 10});
    flexible->setAutoresizingMask(UIViewAutoresizingFlexibleWidth);
    holder->addSubview(flexible);
    holder->addSubview(fixed);
    holder->setFrame({0, 0, 768, 100});
    EXPECT_EQ((Rect{-40, 0, 808, 20}), flexible->frame());
    EXPECT_EQ((Rect{0, 0, 10, 10}), fixed->frame());
}

TEST(UIView, bounds_areTheFrameAtTheOrigin) {
    EXPECT_EQ((Rect{0, 0, 3, 4}), std::make_shared<UIView>(Rect{1, 2, 3, 4})->bounds());
}

TEST(UIView, animations_runAtOnce) {
    const auto view = std::make_shared<UIView>();
    view->setAlpha(0);
    UIView::animateWithDuration_animations(1.0, [&] { view->setAlpha(1); });
    EXPECT_EQ(1.0, view->alpha());
    UIView::animateWithDuration_animations(1.0, {});
}

TEST(UIView, alphaChangedInAnAnimation_keepsHowItIsShown) {
    const auto view = std::make_shared<UIView>();
    view->setAlpha(0);
    EXPECT_EQ(std::nullopt, view->fade());
    UIView::animateWithDuration_animations(0.5, [&] { view->setAlpha(0.75); });
    EXPECT_EQ((UIView::Fade{.from = 0, .seconds = 0.5}), view->fade());
    view->setAlpha(1);
    EXPECT_EQ(std::nullopt, view->fade());
    UIView::animateWithDuration_animations(0, [&] { view->setAlpha(0); });
    EXPECT_EQ(std::nullopt, view->fade());
    UIView::animateWithDuration_animations(1, [&] { view->setAlpha(0); });
    EXPECT_EQ(std::nullopt, view->fade()) << "nothing changed";
}

TEST(UIView, classes_areFoundByTheirNames) {
    const auto& registry = ClassRegistry::shared();
    for (const char* name : {"UIView", "UILabel", "UIImageView", "UINavigationBar", "UISwitch", "UISlider",
                             "UITextField", "UITableView", "UITableViewCell"}) {
        const auto made = registry.make<UIView>(name);
        ASSERT_TRUE(made.has_value()) << name;
        EXPECT_EQ(name, (*made)->getClass().name());
    }
}

}  // namespace
}  // namespace platform
